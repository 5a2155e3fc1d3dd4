// How the host opens an SQLite database, one statement after the other, ended by a null pointer. The benchmark's limit
// program, which is plain C, opens it the same way; hence C.
#ifndef ZUL_CONNECTION_SETTINGS_H
#define ZUL_CONNECTION_SETTINGS_H

// What was committed has been told to the operator as prepared, and stands on the disk: each commit waits for it. Only
// a number that is given out does not: it may be lost with the power as long as nothing was written with it, and what is
// written with it takes it along, since the log is synced from its beginning on.
#define ZUL_WAIT_FOR_DISK "PRAGMA synchronous=FULL"
static const char* const zulWaitForDisk = ZUL_WAIT_FOR_DISK;
static const char* const zulDoNotWaitForDisk = "PRAGMA synchronous=NORMAL";

static const char* const zulConnectionSettings[] = {
    "PRAGMA journal_mode=WAL",
    ZUL_WAIT_FOR_DISK,
    "PRAGMA foreign_keys=OFF",
    "PRAGMA cache_size=-65536",
    "PRAGMA temp_store=MEMORY",
    // A mapped file that another program truncates ends this one with a signal (SIGBUS), where reading gives an error.
    // Mapped, a search over a million customers takes 1 % less time and 190 MB more memory, and a preparation the same.
    "PRAGMA mmap_size=0",
    // Sixteen megabytes of log before it is copied into the file. A preparation commits each row, and its rows come to
    // lie on the same few pages: the longer the log, the fewer of them are written back.
    "PRAGMA wal_autocheckpoint=4096",
    // NOLINTNEXTLINE(modernize-use-nullptr): C reads this too
    0,
};

#endif
