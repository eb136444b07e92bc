#!/usr/bin/env python3
"""Prints the table of secure_answers.inc: plain text, mixed text, encoded plain text, secure string.

A second opinion, from the standard library's Base64 with the symbols exchanged.
"""
import base64
import itertools

KEY = b"8W371KJ05926143DCF57"
TEXTS = [b"a", b"1", b"k", b"=v", b"name", b"value", b"8W371KJ05926143DCF57", b"8w371kj0",
         b"\xfb\xff\xbf\xfe", bytes(range(1, 256))]


def mixed(text):
    return bytes(k if t == k else t ^ k for t, k in zip(text, itertools.cycle(KEY)))


def encoded(text):
    return base64.b64encode(text, b"_!").replace(b"=", b"$").decode()


def literal(text):
    return '"' + "".join("\\%03o" % byte for byte in text) + '"'


for plain in TEXTS:
    print("{%s,\n %s,\n \"%s\",\n \"%s\"}," %
          (literal(plain), literal(mixed(plain)), encoded(plain), encoded(mixed(plain))))
