"""Outcomes of earlier runs, so that an old plugin need not run again."""

import json
import sqlite3

from .work import ACCIDENTS, Outcome


class Memory:
    """Outcomes by key, in a file."""

    def __init__(self, path):
        self.database = sqlite3.connect(path)
        self.database.execute(
            "create table if not exists outcomes (key text primary key, outcome text)"
        )

    def find(self, key):
        row = self.database.execute(
            "select outcome from outcomes where key = ?", (key,)
        ).fetchone()
        if row is None:
            return None
        status, crashed, parts = json.loads(row[0])
        return Outcome(status, crashed, tuple(map(tuple, parts)))

    def store(self, key, outcome):
        """What may be otherwise the next time is not kept."""
        if outcome.status in ACCIDENTS:
            return
        text = json.dumps([outcome.status, outcome.crashed, outcome.parts])
        self.database.execute(
            "insert or replace into outcomes values (?, ?)", (key, text)
        )

    def save(self):
        self.database.commit()

    def forget(self):
        self.database.execute("delete from outcomes")
        self.save()
