Findings have a line, a severity and a code; --fail-on says which make the command fail.

  $ short() { zrtool profile lint "$@" 2>&1 | sed -E 's/ (.).*\[(.*)\]$/\1 \2/' | paste -sd ' ' | fold -sw 95; }
  $ printf '[a] b=1\n[]\n=1\nq="1"\nx=0x1F\np=C:\\\nc=1 ; x\nv=%257s\n[c] d\r\n%1024sz' | tr z '[' > a.ini
  $ sed -i "s/^v=.*/v=$(printf %257s | tr ' ' x)/" a.ini; short a.ini
  a.ini:1:e entry-after-header a.ini:2:e empty-section a.ini:3:e no-key a.ini:4:w quotes 
  a.ini:5:w hexadecimal a.ini:6:w backslash a.ini:7:w comment-in-value a.ini:8:w long-value 
  a.ini:9:n mixed-line-ends a.ini:9:w text-after-header a.ini:10:e long-line a.ini:10:e 
  broken-header zrtool: findings of the severity error or above: 5
  $ printf '\377\376[\0a\0]\0' > utf16; printf '[a]\rb=1\r' > cr; mkdir d
  $ printf '\357\273\277[a]\n' > bom; printf '[a]\nb=1\0\n' > zero; short utf16 cr d bom zero
  utf16:1:e utf-16 cr:1:e cr-only d:e unreadable bom:1:e byte-order-mark bom:1:e before-sections 
  zero:2:e zero-byte zrtool: findings of the severity error or above: 6
  $ printf '[a]\nb="1"\n' > q; zrtool profile lint q; zrtool profile lint --fail-on warning q >q2
  q:2: warning: the quotes are part of the value [quotes]
  zrtool: findings of the severity warning or above: 1
  [1]
