A command line that is wrong is answered in one sentence, also as JSON.

  $ zrtool servce x; zrtool directory; zrtool doctor --jsno
  zrtool: there is no command "servce" (did you mean "service"?); see zrtool --help
  zrtool: a command is missing: list, get or pack; see zrtool directory --help
  zrtool: there is no option "--jsno" (did you mean "--json"?); see zrtool doctor --help
  [2]
  $ zrtool service cron jump; ! zrtool fetch --max 123456789012345678901234567890 x
  zrtool: ACTION: must be start, restart, stop or status; see zrtool service --help
  zrtool: --max: must be a number from 1 to 4294967294; see zrtool fetch --help
  $ ! zrtool fetch --json 2>&-
  {"error":{"code":null,"message":"URL is required; see zrtool fetch --help"}}

Numbers are decimal.

  $ zrtool explain 0140
  140  connectivity check, result 0: msg32.htm was not reached, though msg32.bin beside it was

On a terminal, help has its width, and control characters are shown, not sent.

  $ terminal() { script -qec "stty cols 50; $1" /dev/null < /dev/null | tr -d '\r'; }
  $ terminal 'zrtool log --help' | grep -A 1 FILE.TEXT
    FILE TEXT REQUIRED      Log file, created if
                            missing
  $ export ZRTOOL_KEY=key; secret=$(zrtool secure page?name=value); zrtool plain "$secret"
  page?name=value
  $ ZRTOOL_KEY=wrong terminal "zrtool plain '$secret'" | cat -v
  zrtool: the result holds characters that cannot be printed; is the key wrong?
  page?rv{`=jvzp\x02
  $ printf 'key\r\n' | zrtool plain --key-file - "$secret"
  page?name=value
