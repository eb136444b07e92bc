Profiles as components see them: what they do not see is shown as comments that say why.

  $ printf 'early = 1\n[Net]\nHost = a\nhost = b\nPort = 0x50\n[net]\nProxy = c\n[x\n' > a.ini
  $ zrtool profile show a.ini
  ; hidden, line 1: early = 1 (no section has begun)
  [Net]
  Host=a
  ; hidden, line 4: host = b (only the first entry of this name is read, in line 3)
  Port=0x50
  ; hidden, line 6: [net] (only the first section of this name is read, from line 2)
  ; hidden, line 7: Proxy = c (only the first section of this name is read, from line 2)
  ; hidden, line 8: [x (a header without "]" ends a section and begins none, in line 8)
  $ zrtool profile show a.ini net host --json | sed -n 3p
    {"line":3,"section":"Net","key":"Host","value":"a","hidden":null},
  $ zrtool profile get-int a.ini net PORT --json
  {"value":0,"isDefault":false}
  $ zrtool profile get none.ini net host --default=x; zrtool profile get none.ini net host
  x
  zrtool: code 102: none.ini: *: No such file or directory (ENOENT) (glob)
  [1]
  $ printf '[NET]\nPort=80\nHOST=a\n[New]\nA=\n' > b.ini; zrtool profile diff a.ini b.ini
  - [NET] Port=0x50
  + [NET] Port=80
  + [New] A=
  zrtool: a.ini and b.ini differ in entries: 2
  [1]

A named pipe is refused, because a reader would wait for ever.

  $ mkfifo pipe; for action in 'get pipe a b' 'set pipe a b c' 'recover pipe'; do
  > zrtool profile $action 2>&1; done | uniq -c | sed 's/^ *//'
  3 zrtool: pipe is not a regular file

The shell completes sections and keys from the file on the line.

  $ zrtool complete zrtool profile get b.ini Ne; zrtool complete -- zrtool profile get b.ini NET ''
  New
  Port
  HOST
