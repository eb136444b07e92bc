A component sees a private installation directory, and a scripted internet library on demand.

  $ zrtool sandbox -- sh -c 'ls /etc/init.d /usr/lib/Valdrix/Valdrix; touch /zrcommon.log; exit 7'
  /etc/init.d:
  rc.d
  
  /usr/lib/Valdrix/Valdrix:
  [7]
  $ printf '# an answer of 9 bytes\nheader 4\nread 9 HHHHhello\n' > script
  $ zrtool sandbox --inet script -- zrtool fetch http://x
  hello (no-eol)
  zrtool: internet library: load
  zrtool: internet library: open http://x
  zrtool: internet library: read 15000
  zrtool: internet library: header 9 into 15000
  zrtool: internet library: read 15000
  zrtool: internet library: close
  zrtool: internet library: unload
  $ printf 'open\nreed 3\nread 2 \\x\n' > script; zrtool sandbox --inet script -- true
  zrtool: script: line 1: "open" is followed by no whole number
  zrtool: script: line 2: "reed" is not open, header, read or present
  zrtool: script: line 3: a backslash stands before r, n, 0 or \
  zrtool: script is no script for the internet library
  [1]
