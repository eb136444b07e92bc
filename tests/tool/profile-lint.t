Findings have a severity and a code; --fail-on says which of them make the command fail.

  $ printf '[a] b=1\n[]\n=1\nq="1"\nx=0x1F\np=C:\\\nc=1 ; x\nv=%257s\n[c] d\r\n' x > a.ini
  $ sed -i "s/^v=.*/v=$(printf %257s | tr ' ' x)/" a.ini
  $ zrtool profile lint a.ini --json | grep -o '"severity.*","message' | cut -d '"' -f 4,8
