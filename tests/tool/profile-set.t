A change keeps the link, the owner and the mode of a profile. --dry-run only shows it.

  $ printf '[Net] \r\nPort = 21\r\nHost = a\r\n' > real.ini
  $ chmod 640 real.ini; ln -s real.ini link.ini; cp real.ini before.ini
  $ zrtool profile set --dry-run link.ini net Port 80
  --- link.ini
  +++ link.ini
  @@ -1,3 +1,3 @@
  -[Net] \r (esc)
  -Port = 21\r (esc)
  +[Net]
  +Port=80
   Host = a\r (esc)
  $ cmp real.ini before.ini
  $ zrtool profile set link.ini net Port 80 --json
  {"file":"link.ini","isChanged":true}
  $ readlink link.ini; stat -c %a real.ini; tail -n 2 real.ini
  real.ini
  640
  Port=80
  Host = a\r (esc)
  $ ln real.ini other.ini; zrtool profile set real.ini net Port 81; cat other.ini | head -n 2
  zrtool: real.ini had other names (hard links): they keep the old content
  [Net]
  Port=80

What could not be read back is not written, and nothing but a file is replaced.

  $ cp real.ini before.ini
  $ set_() { zrtool profile set "$@"; cmp real.ini before.ini; }
  $ set_ real.ini 'a]b' k v
  zrtool: nothing was changed: the entry could not be read back: the name of a section ends at the first "]"
  $ set_ real.ini net '#k' v
  zrtool: nothing was changed: the entry could not be read back: a line that begins with "#" or ";" is a comment
  $ set_ real.ini net 'k=' v
  zrtool: nothing was changed: the entry could not be read back: a key ends at the first "="
  $ set_ real.ini net k "$(printf 'two\nlines')"
  zrtool: nothing was changed: the entry could not be read back: a line feed ends the line
  $ set_ real.ini net k "$(printf %257s x)"
  zrtool: nothing was changed: the entry could not be read back: the writer truncates to 256 characters
  $ set_ real.ini net ' ' v
  zrtool: code 203: nothing was changed: * (glob)
  $ mkdir empty; set_ empty net k v; set_ /dev/null net k v
  zrtool: empty: Is a directory (EISDIR)
  zrtool: /dev/null is not a regular file
  $ (ulimit -f 0; set_ real.ini net k v) 2>&1 | grep -o 'File too large'
  File too large
  $ ls -A
  before.ini
  empty
  link.ini
  other.ini
  real.ini
