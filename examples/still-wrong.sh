#!/bin/sh
# Does module $1 print "places: 2" without the plugin $P, and "places: 1" with it?
ulimit -t 1
run() { opt-16 "$@" -passes='default<O2>' | lli-16; }
run "$1" | grep -qx 'places: 2' &&
  run "$1" -load-pass-plugin="$P" | grep -qx 'places: 1'
