-- Builds examples/grid.db, the orders the grid example shows:
--   sqlite3 examples/grid.db < examples/make_grid_db.sql
-- The rows are generated, not random, so the database is the same on every machine.
DROP TABLE IF EXISTS orders;
CREATE TABLE orders (
  Client   TEXT NOT NULL,
  Qty      INTEGER NOT NULL,
  Price    REAL NOT NULL,
  Ordered  TEXT NOT NULL,   -- day/month/year, as the default regional setting writes dates
  Paid     INTEGER NOT NULL, -- 0 or 1
  Progress INTEGER NOT NULL, -- 0 to 100
  Action   TEXT NOT NULL
);
WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i < 2999),
names(k, name) AS (VALUES (0, 'Ana Souza'), (1, 'Bruno Lima'), (2, 'Carla Dias'), (3, 'Davi Rocha'),
                          (4, 'Elisa Prado'), (5, 'Fábio Costa'), (6, 'Gil Moreira'), (7, 'Helena Reis'))
INSERT INTO orders
SELECT (SELECT name FROM names WHERE k = i % 8) || ' ' || (i + 1),
       1 + (i * 7) % 23,
       round(5 + ((i * 37) % 400) / 4.0, 2),
       strftime('%d/%m/%Y', date('2024-01-01', '+' || (i % 365) || ' days')),
       (i % 3 = 0),
       (i * 13) % 101,
       'Open'
FROM n;
