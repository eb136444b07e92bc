What keeps the internet library from being used is named.

  $ installation=/usr/lib/Valdrix/Valdrix; : > script; export INET_SCRIPT=script
  $ cp $BUILD/examples/inet/libinet_without_GetHeader.so $installation/libinet.so; ! zrtool fetch http://x
  zrtool: nothing was fetched from http://x: the internet library has no entry point GetHeader; see zrtool doctor
  $ cp $BUILD/examples/inet/libinet_scripted.so $installation/libinet.so
  $ printf 'header 4\nread 9 HHHHhello\npresent 1 bin\n' > script
  $ zrtool fetch --json http://x; echo old > body; zrtool fetch http://x --max 4 --output body; cat body
  {"body":"hello"}
  zrtool: nothing was fetched from http://x: the body is empty, begins with a zero byte, or is larger than 4 bytes (--max); see zrtool doctor
  old
  $ zrtool fetch http://x --max 5 --output body; cat body; echo; echo "open 0" >> script; ! zrtool fetch http://x
  hello
  zrtool: nothing was fetched from http://x: the address could not be opened or read; see zrtool doctor
  $ printf '12\tConnection Check\thttp://x\n' | zrtool directory pack $installation/infoeml.dat
  $ zrtool directory get 12 'connection check'; ! zrtool check --json
  http://x
  {"reachable":false,"code":140,"reason":"msg32.htm was not reached, though msg32.bin beside it was"}
  zrtool: result 0, code 140: msg32.htm was not reached, though msg32.bin beside it was; see zrtool doctor
  $ zrtool interfaces --why
  lo\t00-00-00-00-00-00\trunning\tdoes not count: it is named lo (esc)

The services of the system.

  $ printf '#!/bin/sh\necho $1 > done\n' > /etc/init.d/service; chmod +x /etc/init.d/service
  $ zrtool service service restart; cat done
  restart
  $ printf 'ana ANANAS' > f; zrtool find ANA f | tr '\n' ' '; ! zrtool find A .
  0 4 6 zrtool: .: Is a directory (EISDIR)
  $ zrtool log . COMP x; zrtool log log COMP x --level 4; zrtool log log COMP '50%s'; cat log
  zrtool: . is not a regular file
  zrtool: level 4 has no bit of the trace mask 3: nothing was written
  COMP 50%s\r (esc)
