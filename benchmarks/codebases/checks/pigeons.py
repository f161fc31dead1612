"""Prints, for a solver, the question whether PIGEONS fit into HOLES, one each.

    pigeons.py PIGEONS HOLES
"""

import sys
from itertools import combinations

pigeons, holes = map(int, sys.argv[1:])


def sits(pigeon, hole):
    return pigeon * holes + hole + 1


clauses = [[sits(pigeon, hole) for hole in range(holes)]
           for pigeon in range(pigeons)]
clauses += [[-sits(first, hole), -sits(second, hole)]
            for hole in range(holes)
            for first, second in combinations(range(pigeons), 2)]
print(f"p cnf {pigeons * holes} {len(clauses)}")
for clause in clauses:
    print(*clause, 0)
