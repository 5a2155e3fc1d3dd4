/*
 * How the host opens an SQLite database, one statement after the other, ended by a null pointer. The benchmark's limit
 * program, which is plain C, opens it the same way; hence C.
 */
#ifndef ZUL_CONNECTION_SETTINGS_H
#define ZUL_CONNECTION_SETTINGS_H

static const char* const zulConnectionSettings[] = {"PRAGMA journal_mode=WAL", "PRAGMA synchronous=NORMAL",
                                                    "PRAGMA foreign_keys=OFF", "PRAGMA cache_size=-65536",
                                                    "PRAGMA temp_store=MEMORY", "PRAGMA mmap_size=268435456",
                                                    /*
     * Sixteen megabytes of log before it is copied into the file. A preparation commits each row, and its rows come to
     * lie on the same few pages: the longer the log, the fewer of them are written back and waited for.
     */
                                                    "PRAGMA wal_autocheckpoint=4096", 0};

#endif
