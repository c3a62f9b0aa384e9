-- Builds examples/entry.db, the towns the entry example completes as they are typed:
--   sqlite3 examples/entry.db < examples/make_entry_db.sql
-- Real Brazilian towns, several with accents and several with an apostrophe in the name, so
-- that both reach the completion's search.
DROP TABLE IF EXISTS cidades;
CREATE TABLE cidades (
  nome TEXT NOT NULL,
  uf   TEXT NOT NULL
);
INSERT INTO cidades VALUES
  ('Aracaju', 'SE'), ('Belém', 'PA'), ('Belo Horizonte', 'MG'), ('Boa Vista', 'RR'),
  ('Brasília', 'DF'), ('Campo Grande', 'MS'), ('Cuiabá', 'MT'), ('Curitiba', 'PR'),
  ('Dias d''Ávila', 'BA'), ('Florianópolis', 'SC'), ('Fortaleza', 'CE'), ('Goiânia', 'GO'),
  ('Herval d''Oeste', 'SC'), ('Itaú de Minas', 'MG'), ('João Pessoa', 'PB'), ('Jundiaí', 'SP'),
  ('Macapá', 'AP'), ('Maceió', 'AL'), ('Manaus', 'AM'), ('Mãe d''Água', 'PB'), ('Natal', 'RN'),
  ('Niterói', 'RJ'), ('Olho d''Água das Flores', 'AL'), ('Palmas', 'TO'), ('Pau d''Arco', 'PA'),
  ('Porto Alegre', 'RS'), ('Porto Velho', 'RO'), ('Recife', 'PE'), ('Ribeirão Preto', 'SP'),
  ('Rio Branco', 'AC'), ('Rio de Janeiro', 'RJ'), ('Salvador', 'BA'), ('Santa Bárbara d''Oeste', 'SP'),
  ('São José dos Campos', 'SP'), ('São Luís', 'MA'), ('São Paulo', 'SP'), ('Teresina', 'PI'),
  ('Vitória', 'ES'), ('Várzea Grande', 'MT');
