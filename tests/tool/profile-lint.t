Findings have a severity and a code; --fail-on says which of them make the command fail.

  $ printf '[a] b=1\n[]\n=1\nq="1"\nx=0x1F\np=C:\\\nc=1 ; x\nv=%257s\n[c] d\r\n' x > a.ini
  $ sed -i 's/^v= */v='"$(printf %256s | tr ' ' x)"'/' a.ini
  $ zrtool profile lint a.ini
  $ printf '\377\376[\0a\0]\0' > utf16; printf '[a]\rb=1\r' > cr; mkdir d
  $ zrtool profile lint utf16 cr d none
  $ printf '[a]\nb="1"\n' > quotes
  $ zrtool profile lint quotes
  $ zrtool profile lint quotes --fail-on warning --json
