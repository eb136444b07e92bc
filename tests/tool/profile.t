Profiles as components see them.

  $ cat > a.ini <<'END'
  > early = 1
  > [Net]
  > Host = example.com
  > host = hidden.example.com
  > Port = 0x50
  > Flag
  > [net]
  > Proxy = none
  > [broken
  > Lost = 1
  > END
  $ zrtool profile get a.ini net HOST
  example.com
  $ zrtool profile get-int a.ini net port --json
  {"value":0,"isDefault":false}
  $ zrtool profile get a.ini net flag
  zrtool: code 201: a.ini: * (glob)
  [1]
  $ zrtool profile get missing.ini net host
  zrtool: code 102: missing.ini: *: No such file or directory (ENOENT) (glob)
  [1]
  $ zrtool profile get missing.ini net host --default=
  
  $ zrtool profile show a.ini
  ; hidden, line 1: early = 1 (no section has begun)
  [Net]
  Host=example.com
  ; hidden, line 4: host = hidden.example.com (only the first entry of this name is read, in line 3)
  Port=0x50
  ; hidden, line 6: Flag (the line has no "=", so reading its key fails)
  ; hidden, line 7: [net] (only the first section of this name is read, which begins in line 2)
  ; hidden, line 8: Proxy = none (only the first section of this name is read, which begins in line 2)
  ; hidden, line 9: [broken (the header in line 9 has no "]": it ends a section and begins none)
  ; hidden, line 10: Lost = 1 (the header in line 9 has no "]": it ends a section and begins none)
  $ zrtool profile show a.ini net host --json | tail -n 3
    {"line":4,"section":"Net","key":"host","value":"hidden.example.com","hidden":"repeated-key"},
    {"line":7,"section":"net","key":null,"value":null,"hidden":"repeated-section"}
  ]
  $ zrtool profile show a.ini net proxies
  zrtool: code 202: a.ini: * (glob)
  [1]

Two profiles are compared by section and key.

  $ printf '[NET]\nPort=80\nHOST=example.com\n[New]\nA=\n' > b.ini
  $ zrtool profile diff a.ini b.ini
  -[Net] Port=0x50
  +[Net] Port=80
  +[New] A=
  zrtool: a.ini and b.ini differ in entries: 2
  [1]
  $ zrtool profile diff a.ini ./a.ini --json
  []

A named pipe would make a reader wait for ever.

  $ mkfifo pipe
  $ for action in 'get pipe a b' 'set pipe a b c' 'diff pipe pipe' 'recover pipe'; do
  >   zrtool profile $action; done
  zrtool: pipe is not a regular file
  zrtool: pipe is not a regular file
  zrtool: pipe is not a regular file
  zrtool: pipe is not a regular file
  [1]
