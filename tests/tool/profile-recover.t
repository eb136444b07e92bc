An interrupted change leaves a copy, beside the profile or in its place.

  $ echo '[b]' > p.tmp; zrtool profile recover p --json; cat p; zrtool profile recover p
  {"file":"p","state":"restored"}
  [b]
  p: no change was interrupted
  $ : > p.tmp; zrtool profile recover p; zrtool profile recover p --discard; rm p
  zrtool: p is as it was before an interrupted change; p.tmp, what that change left, may be a part only (--discard)
  p is as it was before an interrupted change; p.tmp is removed
  $ : > p.tmp; mkdir d; zrtool profile recover p; zrtool profile recover d
  zrtool: p is missing, and p.tmp is empty
  zrtool: d: Is a directory (EISDIR)
  [1]
