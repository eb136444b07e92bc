An interrupted change leaves a copy, beside the profile or in its place.

  $ echo '[a]' > p; zrtool profile recover p
  p: no change was interrupted
  $ echo '[b]' > p.tmp; zrtool profile recover p
  zrtool: p is as it was before an interrupted change; p.tmp, what that change left, may be a part only (--discard)
  [1]
  $ rm p; zrtool profile recover p --json; cat p
  {"file":"p","state":"restored"}
  [b]
  $ : > p.tmp; zrtool profile recover p --discard; ls
  p is as it was before an interrupted change; p.tmp is removed
  p
  $ rm p; : > p.tmp; zrtool profile recover p
  zrtool: p is missing, and p.tmp is empty
  [1]
  $ mkdir d; zrtool profile recover d; zrtool profile recover p/q
  zrtool: d: Is a directory (EISDIR)
  zrtool: p/q: * (glob)
  [1]
