The doctor says for each problem what to try.

  $ export INET_SCRIPT=/dev/null installation=/usr/lib/Valdrix/Valdrix; zrtool doctor 2>&- | grep -A 1 PROBLEM
  PROBLEM  internet-library /usr/lib/Valdrix/Valdrix/libinet.so: the internet library cannot be loaded: /usr/lib/Valdrix/Valdrix/libinet.so: cannot open shared object file: No such file or directory
           try: install the product, or a stand-in module for tests
  $ cp $BUILD/examples/inet/libinet_scripted.so $installation/libinet.so; chmod 777 $installation
  $ printf '7\tname\tvalue\n' | zrtool directory pack $installation/infoeml.dat
  $ printf short > $installation/zrinet.opt
  $ zrtool doctor | sed -n '/PROBLEM/,/try/p'
  zrtool: checks that found a problem: 3
  PROBLEM  installation-directory /usr/lib/Valdrix/Valdrix: owner 0, mode 0777: only root may be able to write to it
           try: chown root /usr/lib/Valdrix/Valdrix && chmod go-w /usr/lib/Valdrix/Valdrix
  PROBLEM  settings /usr/lib/Valdrix/Valdrix/zrinet.opt: 5 bytes instead of at least 788
           try: restore it from a backup, or install the product again
  PROBLEM  connection-check /usr/lib/Valdrix/Valdrix/infoeml.dat: entry 12, "Connection Check", is missing, empty or too long
           try: (zrtool directory list; printf '12\tConnection Check\tADDRESS\n') | zrtool directory pack /usr/lib/Valdrix/Valdrix/infoeml.dat
  $ rm -r $installation; zrtool doctor --json | grep '"inst.*problem'; ! zrtool doctor --process 4000000
  zrtool: checks that found a problem: 2
    {"id":"installation-directory","status":"problem","path":"/usr/lib/Valdrix/Valdrix","message":"No such file or directory (ENOENT)","try":"install the product, which creates it"},
  zrtool: there is no process 4000000
