A component sees a private installation directory. A script for the stand-in is checked first.

  $ zrtool sandbox -- sh -c 'ls /usr/lib/Valdrix/Valdrix; echo "$@"; exit 7' sh '[a]'
  [a]
  [7]
  $ printf 'open\nreed 3\nread 2 \\x\n' > script; zrtool sandbox --inet script -- true
  zrtool: script: line 1: "open" is followed by no whole number
  zrtool: script: line 2: "reed" is not open, header, read or present
  zrtool: script: line 3: a backslash stands before r, n, 0 or \
  zrtool: script is no script for the internet library
  [1]
