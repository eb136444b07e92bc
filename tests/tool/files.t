What a command cannot write whole, it leaves as it was.

  $ echo hello > f; ln -s f link; ln f hard; mkdir d small; mkfifo pipe; truncate -s 2G big
  $ for target in link hard d pipe /dev/null; do zrtool copy f $target; done
  zrtool: f and link are the same file
  zrtool: f and hard are the same file
  zrtool: d: Is a directory (EISDIR)
  zrtool: pipe is not a regular file and was left as it is
  zrtool: /dev/null is not a regular file and was left as it is
  [1]
  $ zrtool copy d made; zrtool copy pipe made; ! (ulimit -f 8; zrtool copy big f)
  zrtool: d: Is a directory (EISDIR)
  zrtool: pipe is not a regular file
  zrtool: big was not copied to f: File too large (EFBIG)
  $ mount -t tmpfs -o size=8k small small; echo old > small/file; ! zrtool copy big small/file
  zrtool: big was not copied to small/file: No space left on device (ENOSPC)
  $ timeout 0.3 zrtool copy big f; cat f small/file; ls -A . small | tr '\n' ' '; umount small
  hello
  old
  .: big d f hard link pipe small  small: file  (no-eol)

A replaced file keeps its links and its mode. A wider mode is announced.

  $ echo old > old; chmod 640 old; ln -s old tolink; zrtool copy f tolink; stat -c %A tolink old
  lrwxrwxrwx
  -rw-r-----
  $ zrtool copy --for-all f old; stat -c %A old
  zrtool: old gets mode 0777: every local user can change it
  -rwxrwxrwx
  $ seq 788 | sed 's/.*/0f/' > hex; (seq 300; echo end) > long; chmod 600 long
  $ zrtool options save long < hex; tail -c 4 long; chmod 600 long
  zrtool: long gets mode 0666: every local user can change it
  end
  $ zrtool options show long | tail -c 6; stat -c %A long
  0f 0f
  -rw-------
  $ zrtool options show pipe; ! zrtool options show none --json 2>&-
  zrtool: pipe is not a regular file
  {"error":{"code":2,"system":"ENOENT","message":"code 2: none: there is no such file, or its path has 256 characters or more: No such file or directory (ENOENT)"}}
  $ ! zrtool options save /dev/full < hex
  zrtool: /dev/full is not a regular file and was left as it is

The directory as lines and back; JSON shows bytes that are not UTF-8 as numbers.

  $ printf '7\t\303\251\t\377\n' | zrtool directory pack list; zrtool directory list list | od -An -c
     7  \t 303 251  \t 377  \n
  $ zrtool directory pack list < /dev/null; echo x >> list; ! zrtool directory list list --json
  zrtool: standard input is empty; nothing was written
  [
    {"number":7,"name":"\xc3\xa9","value":{"bytes":"ff"}} (esc)
  ]
  zrtool: not all of list was listed; 2 bytes at the end are no record

Streams that are closed or full.

  $ zrtool --help > /dev/full; zrtool copy --for-all f long >&- 2>&-; cat long; ! zrtool --version >&-
  zrtool: writing to standard output: No space left on device (ENOSPC)
  hello
  zrtool: writing to standard output: Bad file descriptor (EBADF)
