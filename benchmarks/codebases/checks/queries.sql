-- Recursive queries, triggers that fire triggers, expressions nested deeply,
-- full-text search, trees of boxes, JSON, and the checks that SQLite has itself.
PRAGMA page_size = 1024;
CREATE TABLE person(id INTEGER PRIMARY KEY, name TEXT, boss INTEGER, pay REAL);
WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 3000)
INSERT INTO person SELECT i, printf('p%05d', (i * 7919) % 10007), i / 3, (i * 31) % 977 FROM n;
CREATE INDEX by_name ON person(name);
CREATE INDEX by_boss ON person(boss, pay DESC);
WITH RECURSIVE under(id, level, path) AS (
  SELECT id, 0, name FROM person WHERE id = 1
  UNION ALL
  SELECT p.id, level + 1, path || '/' || p.name FROM person p JOIN under u ON p.boss = u.id
)
SELECT level, count(*), max(path), total(length(path)) FROM under GROUP BY level;
WITH RECURSIVE
  x(a) AS (VALUES(-2.0) UNION ALL SELECT a + 0.05 FROM x WHERE a < 1.2),
  y(b) AS (VALUES(-1.0) UNION ALL SELECT b + 0.1 FROM y WHERE b < 1.0),
  m(i, cx, cy, x, y) AS (
    SELECT 0, a, b, 0.0, 0.0 FROM x, y
    UNION ALL
    SELECT i + 1, cx, cy, x * x - y * y + cx, 2.0 * x * y + cy FROM m
    WHERE (x * x + y * y) < 4.0 AND i < 28),
  best(steps, cx, cy) AS (SELECT max(i), cx, cy FROM m GROUP BY cx, cy)
SELECT group_concat(line, char(10)) FROM
  (SELECT rtrim(group_concat(substr(' .+*#', 1 + min(steps / 7, 4), 1), '')) AS line
   FROM best GROUP BY cy);
WITH RECURSIVE
  input(s) AS (VALUES('53..7....6..195....98....6.8...6...34..8.3..17...2...6.6....28....419..5....8..79')),
  digits(z, lp) AS (VALUES('1', 1) UNION ALL SELECT CAST(lp + 1 AS TEXT), lp + 1 FROM digits WHERE lp < 9),
  fill(s, ind) AS (
    SELECT s, instr(s, '.') FROM input
    UNION ALL
    SELECT substr(s, 1, ind - 1) || z || substr(s, ind + 1),
           instr(substr(s, 1, ind - 1) || z || substr(s, ind + 1), '.')
    FROM fill, digits
    WHERE ind > 0 AND NOT EXISTS (
      SELECT 1 FROM digits AS d
      WHERE z = substr(s, ((ind - 1) / 9) * 9 + lp, 1)
         OR z = substr(s, ((ind - 1) % 9) + (lp - 1) * 9 + 1, 1)
         OR z = substr(s, (((ind - 1) / 3) % 3) * 3 + ((ind - 1) / 27) * 27 + lp + ((lp - 1) / 3) * 6, 1)))
SELECT s FROM fill WHERE ind = 0;
SELECT p.name, b.name, rank() OVER (PARTITION BY p.boss % 7 ORDER BY p.pay, p.id) AS r,
       sum(p.pay) OVER (ORDER BY p.id ROWS BETWEEN 3 PRECEDING AND CURRENT ROW)
FROM person p LEFT JOIN person b ON p.boss = b.id WHERE p.id BETWEEN 100 AND 130 ORDER BY r, 1;
SELECT boss % 10 AS g, count(*), avg(pay), min(name) FROM person
WHERE (pay > 100 AND (name LIKE 'p0%' OR (id IN (SELECT boss FROM person WHERE pay > 500)
       AND NOT (pay BETWEEN 300 AND 400)))) GROUP BY g HAVING count(*) > 3 ORDER BY 3 DESC;
SELECT ((((((((1 + 2) * 3) - 4) * ((5 + 6) * (7 - 8))) + 9) * 10) / 11) % 1000),
       CASE WHEN 1 THEN CASE WHEN 0 THEN 'a' ELSE CASE WHEN NULL THEN 'b' ELSE coalesce(NULL, NULL, 'c') END END END;
SELECT count(*) FROM (SELECT * FROM (SELECT * FROM (SELECT * FROM person WHERE id > 5 UNION SELECT * FROM person WHERE id < 50)
  EXCEPT SELECT * FROM person WHERE id % 2) INTERSECT SELECT * FROM person WHERE pay > 200);

CREATE TABLE log(id INTEGER PRIMARY KEY, depth, note);
PRAGMA recursive_triggers = on;
CREATE TRIGGER again AFTER INSERT ON log WHEN new.depth > 0 BEGIN
  INSERT INTO log(depth, note) VALUES(new.depth - 1, 'from ' || new.id);
END;
INSERT INTO log(depth, note) VALUES(100, 'start');
SELECT count(*), max(note) FROM log;
CREATE TABLE parent(id INTEGER PRIMARY KEY, up INTEGER REFERENCES parent ON DELETE CASCADE);
PRAGMA foreign_keys = on;
WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 400)
INSERT INTO parent SELECT i, nullif(i / 2, 0) FROM n;
DELETE FROM parent WHERE id = 3;
SELECT count(*), sum(id) FROM parent;

CREATE VIRTUAL TABLE text USING fts5(body);
INSERT INTO text SELECT 'the ' || name || ' works for p' || boss || ' at ' || pay FROM person WHERE id < 400;
SELECT rowid, snippet(text, 0, '[', ']', '..', 4) FROM text
WHERE text MATCH '(p1 OR p2 OR (p3 NOT p4)) AND works' ORDER BY rowid LIMIT 12;
CREATE VIRTUAL TABLE box USING rtree(id, x0, x1, y0, y1);
INSERT INTO box SELECT id, id % 50, id % 50 + 2, id / 50, id / 50 + 3 FROM person WHERE id < 1500;
SELECT count(*), sum(id) FROM box WHERE x0 < 20 AND x1 > 10 AND y0 < 12 AND y1 > 4;
DELETE FROM box WHERE id % 3 = 0;
SELECT count(*), rtreecheck('box') FROM box;
SELECT json_extract('{"a":[1,{"b":[2,{"c":[3,{"d":"deep"}]}]}]}', '$.a[1].b[1].c[1].d'),
       json_group_array(json_object('id', id, 'pay', pay)) FROM person WHERE id < 6;
SELECT fullkey, type, atom FROM json_tree('{"x":[1,[2,[3,[4]]],{"y":{"z":null}}]}') ORDER BY id;

BEGIN;
UPDATE person SET pay = pay * 1.1 WHERE id % 2;
SAVEPOINT half;
DELETE FROM person WHERE id > 1000;
ROLLBACK TO half;
COMMIT;
ALTER TABLE person ADD COLUMN extra DEFAULT 'none';
SELECT count(*), round(sum(pay), 3), min(extra) FROM person;
VACUUM;
EXPLAIN QUERY PLAN SELECT * FROM person p, person q WHERE p.boss = q.id AND q.name > 'p05' ORDER BY p.pay;
PRAGMA integrity_check;
PRAGMA foreign_key_check;
