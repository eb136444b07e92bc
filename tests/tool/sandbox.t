A component sees a private installation directory, and a scripted internet library on demand.

  $ zrtool sandbox -- sh -c 'ls /usr/lib/Valdrix/Valdrix /zrcommon.log; echo "$@"; exit 7' sh '[a]'
  ls: cannot access '/zrcommon.log': No such file or directory
  /usr/lib/Valdrix/Valdrix:
  [a]
  [7]
  $ printf '# an answer of 9 bytes\nheader 4\nread 9 HHHHhello\n' > script
  $ zrtool sandbox --inet script -- zrtool fetch http://x 2>&1 | grep -e hello -e load
  hellozrtool: internet library: load
  zrtool: internet library: unload
  $ printf 'open\nreed 3\nread 2 \\x\n' > script; zrtool sandbox --inet script -- true
  zrtool: script: line 1: "open" is followed by no whole number
  zrtool: script: line 2: "reed" is not open, header, read or present
  zrtool: script: line 3: a backslash stands before r, n, 0 or \
  zrtool: script is no script for the internet library
  [1]
