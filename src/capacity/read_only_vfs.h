#pragma once

/// Name of an SQLite file system that reads and locks as the system's own does and cannot write: whatever lies beside a
/// data file, no byte of it, of a journal or of a directory changes. A file with a hot journal or in WAL mode cannot be
/// read through it, because that would take writing.
const char* readOnlyVfs();
