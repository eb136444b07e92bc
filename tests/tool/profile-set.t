A change keeps link and mode of a profile. With --dry-run it is only shown, line ends included.

  $ printf '[Net] \r\nPort = 21\r\nHost = a\r\n' > real.ini; chmod 640 real.ini
  $ ln -s real.ini link.ini; cp real.ini before.ini
  $ zrtool profile set --dry-run link.ini net Port 80 | sed 1,2d; cmp real.ini before.ini
  @@ -1,3 +1,3 @@
  -[Net] \r (esc)
  -Port = 21\r (esc)
  +[Net]
  +Port=80
   Host = a\r (esc)
  $ zrtool profile set link.ini net Port 80; stat -c '%N %a' link.ini real.ini; cat real.ini
  'link.ini' -> 'real.ini' 777
  'real.ini' 640
  [Net]
  Port=80
  Host = a\r (esc)

What could not be read back is not written, and only a file is replaced.

  $ set_() { zrtool profile set "$@" 2>&1 | sed 's/.*: //'; }; cp real.ini before.ini
  $ set_ real.ini 'a]b' k v; set_ real.ini n '#k' v; set_ real.ini n k= v; set_ real.ini n ' ' v
  the name of a section ends at the first "]"
  a line that begins with "#" or ";" is a comment
  a key ends at the first "="
  the key is empty
  $ set_ real.ini n k "$(printf '1\n2')"; set_ real.ini n k "$(printf %257s x)"
  a line feed ends the line
  the writer truncates to 256 characters
  $ mkdir d; set_ d n k v; set_ /dev/null n k v; (ulimit -f 0; set_ real.ini n k v)
  Is a directory (EISDIR)
  /dev/null is not a regular file
  File too large (EFBIG)
  $ cmp real.ini before.ini; ls -A | paste -sd ' '
  before.ini d link.ini real.ini
