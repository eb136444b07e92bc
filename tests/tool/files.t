What a command cannot write whole, it leaves as it was.

  $ printf hello > f; ln -s f link; ln f hard; mkdir d small; mkfifo pipe; truncate -s 2G big
  $ for target in ./f link hard d pipe /dev/null; do zrtool copy f $target; ! done
  /bin/sh: 4: Syntax error: "done" unexpected (no-eol)
  $ zrtool copy d made; zrtool copy pipe made; ! (ulimit -f 8; zrtool copy big f)
