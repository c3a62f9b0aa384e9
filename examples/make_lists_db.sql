-- Builds examples/lists.db, the towns the lists example shows:
--   sqlite3 examples/lists.db < examples/make_lists_db.sql
-- The towns are made up from common parts of Brazilian place names, each with one of the 27
-- federative units; the rows are generated, not random, so the database is the same everywhere.
DROP TABLE IF EXISTS cities;
DROP TABLE IF EXISTS states;
CREATE TABLE states (
  State  TEXT PRIMARY KEY,   -- the unit's two letters
  Name   TEXT NOT NULL,
  Region INTEGER NOT NULL    -- 0 Norte, 1 Nordeste, 2 Centro-Oeste, 3 Sudeste, 4 Sul
);
INSERT INTO states VALUES
  ('AC', 'Acre', 0), ('AL', 'Alagoas', 1), ('AP', 'Amapá', 0), ('AM', 'Amazonas', 0),
  ('BA', 'Bahia', 1), ('CE', 'Ceará', 1), ('DF', 'Distrito Federal', 2), ('ES', 'Espírito Santo', 3),
  ('GO', 'Goiás', 2), ('MA', 'Maranhão', 1), ('MT', 'Mato Grosso', 2), ('MS', 'Mato Grosso do Sul', 2),
  ('MG', 'Minas Gerais', 3), ('PA', 'Pará', 0), ('PB', 'Paraíba', 1), ('PR', 'Paraná', 4),
  ('PE', 'Pernambuco', 1), ('PI', 'Piauí', 1), ('RJ', 'Rio de Janeiro', 3), ('RN', 'Rio Grande do Norte', 1),
  ('RS', 'Rio Grande do Sul', 4), ('RO', 'Rondônia', 0), ('RR', 'Roraima', 0), ('SC', 'Santa Catarina', 4),
  ('SP', 'São Paulo', 3), ('SE', 'Sergipe', 1), ('TO', 'Tocantins', 0);

CREATE TABLE cities (
  Name       TEXT NOT NULL,
  State      TEXT NOT NULL REFERENCES states(State),
  Population INTEGER NOT NULL
);
WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i < 3599),
first(k, word) AS (VALUES (0, 'São'), (1, 'Santa'), (2, 'Nova'), (3, 'Porto'), (4, 'Campo'),
                          (5, 'Vila'), (6, 'Rio'), (7, 'Monte'), (8, 'Serra'), (9, 'Lagoa'),
                          (10, 'Barra'), (11, 'Ponte'), (12, 'Alto'), (13, 'Vale'), (14, 'Bom Jesus'),
                          (15, 'Cruz'), (16, 'Pedra'), (17, 'Morro'), (18, 'Campos'), (19, 'Águas')),
middle(k, word) AS (VALUES (0, 'Alegre'), (1, 'Verde'), (2, 'Bonito'), (3, 'Grande'), (4, 'Azul'),
                           (5, 'Formoso'), (6, 'Dourado'), (7, 'Seco'), (8, 'Claro'), (9, 'Novo'),
                           (10, 'Belo'), (11, 'Branco'), (12, 'Preto'), (13, 'Fundo'), (14, 'Largo'),
                           (15, 'Velho'), (16, 'Real'), (17, 'Feliz'), (18, 'Lindo'), (19, 'Sereno'),
                           (20, 'Limpo'), (21, 'Bravo'), (22, 'Manso'), (23, 'Doce'), (24, 'Quente'),
                           (25, 'Frio'), (26, 'Redondo'), (27, 'Comprido'), (28, 'Santo'), (29, 'Vermelho')),
last(k, word) AS (VALUES (0, ''), (1, ' do Sul'), (2, ' do Norte'), (3, ' da Serra'), (4, ' de Minas'),
                         (5, ' do Oeste')),
unit(k, state) AS (SELECT row_number() OVER (ORDER BY State) - 1, State FROM states)
INSERT INTO cities
SELECT (SELECT word FROM first WHERE k = i % 20) || ' ' || (SELECT word FROM middle WHERE k = (i / 20) % 30) ||
       (SELECT word FROM last WHERE k = i / 600),
       (SELECT state FROM unit WHERE k = (i * 7) % 27),
       1000 + (i * 7919) % 250000
FROM n;
