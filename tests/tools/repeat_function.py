"""Repeats the function @f of an IR file: repeat_function.py COUNT FILE.

What stands in front of its definition is written once, and then the function as
@f0, @f1, ...
"""

import sys


def main():
    count, path = int(sys.argv[1]), sys.argv[2]
    with open(path, encoding="utf-8") as file:
        head, define, body = file.read().partition("define ")
    print(head, end="")
    for i in range(count):
        print((define + body).replace("@f(", f"@f{i}("))


main()
