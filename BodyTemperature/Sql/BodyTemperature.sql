-- Settings of the body-temperature dashboard: one row, columns read by position.
CREATE TABLE IF NOT EXISTS TemperatureConfigure (
    FaceThermSnap INTEGER,
    FaceSnap INTEGER,
    FaceContrast INTEGER,
    NoMask INTEGER,
    TemAbnormal INTEGER,
    Dispeared INTEGER,
    DispearedTime INTEGER,
    SaveNoMaskPath TEXT,
    SaveTemNormalPath TEXT,
    SaveTemAbnormalPath TEXT,
    OpenNoMaskSound INTEGER,
    OpenTempNormal INTEGER,
    OpenTempAbnormal INTEGER
);
