-- The tables of the tests: every valve passes 10 x Cv x pressure in the unit of its table, so that a case can be worked
-- out by hand. The large-tank tables give other flows than the formula for small tanks. The valve tables are there, empty;
-- those that get no rows here have some at the ends of their pressures.
CREATE TEMP TABLE series (type, cv);
INSERT INTO series VALUES
    ('Pad', 0.2), ('Pad', 0.4), ('Pad', 1), ('Pad', 2), ('Pad', 4), ('Pad', 7.5), ('Pad', 10), ('Pad', 20), ('Pad', 45),
    ('Pad', 60), ('Depad', 3), ('Depad', 6), ('Depad', 12), ('Depad', 17), ('Depad', 20), ('Depad', 35), ('Depad', 70),
    ('Depad', 90), ('Depad', 115), ('Depad', 140), ('Depad', 150), ('Depad', 200), ('Depad', 280);
CREATE TEMP TABLE valve AS
    SELECT type, cv, CASE WHEN cv < 0.5 THEN '1/2"' WHEN cv < 5 THEN '1"' WHEN cv < 25 THEN '2"' ELSE '3"' END AS body
    FROM series;

WITH at(p) AS (VALUES (1), (10), (25), (50), (100), (200))
    INSERT INTO psi_Pad SELECT p, 10.0 * cv * p, body, cv FROM at, valve WHERE type = 'Pad';
WITH at(p) AS (VALUES (0.07), (1), (1.8), (5), (14.06))
    INSERT INTO kgcm2_Pad SELECT p, 10.0 * cv * p, body, cv FROM at, valve WHERE type = 'Pad';
WITH at(p) AS (VALUES (6.9), (100), (172), (500), (1379))
    INSERT INTO kpa_Pad SELECT p, 10.0 * cv * p, body, cv FROM at, valve WHERE type = 'Pad';
WITH at(p) AS (VALUES (0.07), (0.5), (1), (2), (2.8))
    INSERT INTO psi_Depad SELECT p, 10.0 * cv * p, body, cv FROM at, valve WHERE type = 'Depad';
WITH at(p) AS (VALUES (2), (10), (20), (50), (77))
    INSERT INTO inwc_Depad SELECT p, 10.0 * cv * p, body, cv FROM at, valve WHERE type = 'Depad';
WITH at(p) AS (VALUES (5), (25), (50), (100), (193))
    INSERT INTO mbar_Depad SELECT p, 10.0 * cv * p, body, cv FROM at, valve WHERE type = 'Depad';

CREATE TABLE USLargeTank (TankVol REAL, Pad REAL, DepadHFP REAL, DepadLFP REAL);
CREATE TABLE MetriclargeTank (TankVol REAL, Pad REAL, DepadHFP REAL, DepadLFP REAL);
INSERT INTO USLargeTank VALUES
    (800000, 20000, 8000, 16000), (1000000, 25000, 10000, 20000), (8000000, 200000, 80000, 160000);
INSERT INTO MetriclargeTank VALUES (3000, 375, 150, 300), (4000, 500, 200, 400), (30000, 3750, 1500, 3000);
