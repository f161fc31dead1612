"""Compares the machine code in two object files.

    text_ratio.py --at-least LOW --at-most HIGH REFERENCE OTHER

Fails unless OTHER holds LOW to HIGH times as many bytes of code as REFERENCE.
Code is what stands in the executable sections of 64-bit little-endian ELF.
"""

import argparse
import struct
import sys

EXECUTABLE = 4


def code_size(path):
    with open(path, "rb") as file:
        data = file.read()
    if data[:6] != b"\x7fELF\x02\x01":
        sys.exit(f"text_ratio.py: {path} is no 64-bit little-endian ELF file")
    table, = struct.unpack_from("<Q", data, 0x28)
    entry_size, entries = struct.unpack_from("<HH", data, 0x3A)
    size = 0
    for index in range(entries):
        flags, = struct.unpack_from("<Q", data, table + index * entry_size + 8)
        bytes_, = struct.unpack_from("<Q", data,
                                     table + index * entry_size + 0x20)
        if flags & EXECUTABLE:
            size += bytes_
    return size


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--at-least", type=float, required=True)
    parser.add_argument("--at-most", type=float, required=True)
    parser.add_argument("reference")
    parser.add_argument("other")
    args = parser.parse_args()
    reference, other = code_size(args.reference), code_size(args.other)
    if not args.at_least * reference <= other <= args.at_most * reference:
        sys.exit(f"text_ratio.py: {other} bytes of code are not"
                 f" {args.at_least:g} to {args.at_most:g} times {reference}")


main()
