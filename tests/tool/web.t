The development internet library fetches pages from a real web server.

  $ python3 -um http.server -b 127.0.0.1 8080 > started 2> log & server=$!
  $ until [ -s started ]; do sleep 0.02; done; url=http://127.0.0.1:8080
  $ printf 'hello\n' > page; seq 100000 > large
  $ cp $BUILD/examples/inet/libinet.so /usr/lib/Valdrix/Valdrix/libinet.so; zrtool fetch $url/page
  hello
  $ zrtool fetch $url/large --output copy; cmp copy large; ! zrtool fetch $url/missing 2> /dev/null
  $ printf '12\tConnection Check\t%s\n' $url | zrtool directory pack /usr/lib/Valdrix/Valdrix/infoeml.dat
  $ : > msg32.htm; zrtool check > answer; echo $?; kill $server; ! zrtool fetch $url/page 2> /dev/null
  0
