-- A data file as version 1.1 built it, checksum included: later versions must still read it.
CREATE TABLE psi_Pad (Pressure REAL, flow REAL, Bodysize TEXT, CV REAL);
CREATE INDEX "psi_Pad.Index" ON psi_Pad (Pressure, flow);
INSERT INTO psi_Pad VALUES (100, 20000, '1"', 10), (100, 40000, '1"', 20), (200, 20000, '1"', 10), (200, 40000, '1"', 20);
CREATE TABLE USLargeTank (TankVol REAL PRIMARY KEY, Pad REAL, DepadHFP REAL, DepadLFP REAL) WITHOUT ROWID;
INSERT INTO USLargeTank VALUES (840000, 20000, 12000, 20000), (1000000, 25000, 15000, 25000);
CREATE TABLE Label (label TEXT, date TEXT);
INSERT INTO Label VALUES ('by hand', '2026-11-01');
CREATE TABLE Checksum (value TEXT);
INSERT INTO Checksum VALUES ('f494b3493d8f2762');
PRAGMA application_id = 1346454596;
