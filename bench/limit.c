// The limit program: the least that the embedded database lets anybody pay for a search and for a preparation. A
// bare loop over the same statements, prepared, on the same settings; what it reads it keeps in plain column
// arrays, each distinct text of a column once.
//
//   limit search DATABASE STATEMENTS RUNS         delete, insert … select, select into arrays
//   limit mail|sms DATABASE STATEMENTS all|half   a row for each customer, one by one
//
// STATEMENTS is written by "zulbench statements": a name, a tab and the statement as the database gets it.
// Prints one line a run: "wall NANOSECONDS cpu NANOSECONDS rows NUMBER", and "peak KIBIBYTES" at the end.
#include "bench/limit.h"

#include "host/database/sqlite/ConnectionSettings.h"

#include <inttypes.h>
#include <sqlite3.h>
#include <stdbool.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>

// ------------------------------------------------------------------------------------------------- help

static sqlite3* database;

static _Noreturn void fail(const char* what)
{
    fprintf(stderr, "limit: %s: %s\n", what, database != NULL ? sqlite3_errmsg(database) : "");
    exit(1);
}

static void* need(void* memory)
{
    if (memory == NULL)
        fail("out of memory");
    return memory;
}

static void check(int result, const char* what)
{
    if (result != SQLITE_OK)
        fail(what);
}

static uint64_t nanoseconds(clockid_t clock)
{
    struct timespec now;
    clock_gettime(clock, &now);
    return (uint64_t)now.tv_sec * 1000000000U + (uint64_t)now.tv_nsec;
}

static uint64_t wallAtStart;
static uint64_t cpuAtStart;

static void start(void)
{
    wallAtStart = nanoseconds(CLOCK_MONOTONIC);
    cpuAtStart = nanoseconds(CLOCK_PROCESS_CPUTIME_ID);
}

static void stop(uint64_t rows)
{
    const uint64_t wall = nanoseconds(CLOCK_MONOTONIC) - wallAtStart;
    const uint64_t cpu = nanoseconds(CLOCK_PROCESS_CPUTIME_ID) - cpuAtStart;
    printf("wall %" PRIu64 " cpu %" PRIu64 " rows %" PRIu64 "\n", wall, cpu, rows);
}

static void printPeak(void)
{
    char line[256];
    FILE* status = fopen("/proc/self/status", "r");
    while (status != NULL && fgets(line, sizeof line, status) != NULL) {
        if (strncmp(line, "VmHWM:", 6) == 0)
            printf("peak %ld\n", strtol(line + 6, NULL, 10));
    }
    if (status != NULL)
        fclose(status);
}

// ----------------------------------------------------------------------------------------------- database

struct Named
{
    char* name;
    char* sql;
};

static struct Named statements[32];
static size_t statementCount;

static const char* statementNamed(const char* name)
{
    for (size_t i = 0; i < statementCount; ++i) {
        if (strcmp(statements[i].name, name) == 0)
            return statements[i].sql;
    }
    fail(name);
}

static void readStatements(const char* path)
{
    FILE* file = fopen(path, "r");
    if (file == NULL)
        fail(path);
    char line[16384];
    while (fgets(line, sizeof line, file) != NULL) {
        char* tab = strchr(line, '\t');
        if (tab == NULL || statementCount == sizeof statements / sizeof statements[0])
            fail(path);
        *tab = '\0';
        tab[1 + strcspn(tab + 1, "\n")] = '\0';
        statements[statementCount].name = need(strdup(line));
        statements[statementCount].sql = need(strdup(tab + 1));
        ++statementCount;
    }
    fclose(file);
}

static sqlite3_stmt* prepare(const char* sql)
{
    sqlite3_stmt* statement = NULL;
    if (sqlite3_prepare_v3(database, sql, -1, SQLITE_PREPARE_PERSISTENT, &statement, NULL) != SQLITE_OK)
        fail(sql);
    return statement;
}

static void run(const char* sql)
{
    sqlite3_stmt* statement = prepare(sql);
    int result = SQLITE_OK;
    do
        result = sqlite3_step(statement);
    while (result == SQLITE_ROW);
    if (result != SQLITE_DONE)
        fail(sql);
    sqlite3_finalize(statement);
}

// The host's settings, and the functions that its statements may call.
static void openDatabase(const char* path)
{
    sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
    if (sqlite3_open_v2(path, &database, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, NULL) != SQLITE_OK)
        fail(path);
    for (const char* const* setting = zulConnectionSettings; *setting != NULL; ++setting)
        run(*setting);
    if (limitRegisterFunctions(database) != SQLITE_OK)
        fail("functions");
}

// ----------------------------------------------------------------------------------------- column arrays

// The distinct texts of a column one behind the other, and a table of their numbers.
struct Texts
{
    char* bytes;
    size_t used;
    size_t room;
    uint64_t* ends; // of each text in bytes
    uint32_t count;
    uint32_t roomForEnds;
    uint32_t* slots; // number + 1, 0 for an empty one
    uint32_t slotBits;
};

// Arrays of 4 and 8 bytes a cell, whichever of them the column's values need, and of each cell's kind.
struct Column
{
    uint32_t* words;
    uint64_t* wides;
    uint8_t* kinds;
    struct Texts texts;
};

static uint64_t hash(const char* text, size_t length)
{
    uint64_t state = length * 0x9E3779B97F4A7C15U;
    uint64_t word = 0;
    for (; length >= 8; length -= 8, text += 8) {
        memcpy(&word, text, 8);
        state = (state ^ word) * 0xD6E8FEB86659FD93U;
        state ^= state >> 32;
    }
    word = 0;
    memcpy(&word, text, length);
    state = (state ^ word) * 0xD6E8FEB86659FD93U;
    return state ^ (state >> 32);
}

static void growSlots(struct Texts* texts)
{
    texts->slotBits = texts->slots == NULL ? 10 : texts->slotBits + 1;
    const uint32_t mask = (1U << texts->slotBits) - 1;
    free(texts->slots);
    texts->slots = need(calloc((size_t)mask + 1, sizeof(uint32_t)));
    for (uint32_t i = 0; i < texts->count; ++i) {
        const uint64_t begin = i == 0 ? 0 : texts->ends[i - 1];
        uint32_t slot = (uint32_t)hash(texts->bytes + begin, texts->ends[i] - begin) & mask;
        while (texts->slots[slot] != 0)
            slot = (slot + 1) & mask;
        texts->slots[slot] = i + 1;
    }
}

static uint32_t intern(struct Texts* texts, const char* text, size_t length)
{
    if (texts->slots == NULL || (uint64_t)texts->count * 4 >= ((uint64_t)3 << texts->slotBits))
        growSlots(texts);
    const uint32_t mask = (1U << texts->slotBits) - 1;
    uint32_t slot = (uint32_t)hash(text, length) & mask;
    for (; texts->slots[slot] != 0; slot = (slot + 1) & mask) {
        const uint32_t number = texts->slots[slot] - 1;
        const uint64_t begin = number == 0 ? 0 : texts->ends[number - 1];
        if (texts->ends[number] - begin == length && memcmp(texts->bytes + begin, text, length) == 0)
            return number;
    }
    if (texts->used + length > texts->room) {
        texts->room = (texts->used + length) * 3 / 2 + 65536;
        texts->bytes = need(realloc(texts->bytes, texts->room));
    }
    if (texts->count == texts->roomForEnds) {
        texts->roomForEnds = texts->roomForEnds * 3 / 2 + 1024;
        texts->ends = need(realloc(texts->ends, texts->roomForEnds * sizeof(uint64_t)));
    }
    memcpy(texts->bytes + texts->used, text, length);
    texts->used += length;
    texts->ends[texts->count] = texts->used;
    texts->slots[slot] = ++texts->count;
    return texts->count - 1;
}

static void freeColumn(struct Column* column)
{
    free(column->words);
    free(column->wides);
    free(column->kinds);
    free(column->texts.bytes);
    free(column->texts.ends);
    free(column->texts.slots);
    memset(column, 0, sizeof *column);
}

static void makeRoom(struct Column* column, size_t rows)
{
    if (column->words != NULL)
        column->words = need(realloc(column->words, rows * sizeof(uint32_t)));
    if (column->wides != NULL)
        column->wides = need(realloc(column->wides, rows * sizeof(uint64_t)));
    column->kinds = need(realloc(column->kinds, rows));
}

static uint64_t readRows(sqlite3_stmt* select, struct Column* columns, int count)
{
    size_t room = 0;
    size_t row = 0;
    int result = SQLITE_OK;
    while ((result = sqlite3_step(select)) == SQLITE_ROW) {
        if (row == room) {
            room = room * 3 / 2 + 1024;
            for (int i = 0; i < count; ++i)
                makeRoom(&columns[i], room);
        }
        for (int i = 0; i < count; ++i) {
            struct Column* column = &columns[i];
            const int kind = sqlite3_column_type(select, i);
            column->kinds[row] = (uint8_t)kind;
            switch (kind) {
            case SQLITE_INTEGER:
            case SQLITE_FLOAT: {
                if (column->wides == NULL)
                    column->wides = need(malloc(room * sizeof(uint64_t)));
                if (kind == SQLITE_FLOAT) {
                    const double real = sqlite3_column_double(select, i);
                    memcpy(&column->wides[row], &real, sizeof real);
                } else {
                    column->wides[row] = (uint64_t)sqlite3_column_int64(select, i);
                }
                break;
            }
            case SQLITE_NULL:
                break;
            default: {
                if (column->words == NULL)
                    column->words = need(malloc(room * sizeof(uint32_t)));
                const char* text = (const char*)sqlite3_column_text(select, i);
                column->words[row] = intern(&column->texts, text, (size_t)sqlite3_column_bytes(select, i));
            }
            }
        }
        ++row;
    }
    if (result != SQLITE_DONE)
        fail("select");
    return row;
}

static void search(int runs)
{
    enum
    {
        most = 64
    };
    static struct Column columns[most];
    for (; runs > 0; --runs) {
        start();
        run(statementNamed("delete"));
        run(statementNamed("insert"));
        sqlite3_stmt* select = prepare(statementNamed("select"));
        const int count = sqlite3_column_count(select);
        if (count > most)
            fail("too many columns");
        const uint64_t rows = readRows(select, columns, count);
        sqlite3_finalize(select);
        stop(rows);
        for (int i = 0; i < count; ++i)
            freeColumn(&columns[i]);
    }
}

// -------------------------------------------------------------------------------------------- preparation

struct Recipient
{
    int32_t id;
    bool mail;   // the grid shows an e-mail address
    bool mobile; // and a mobile number
};

static struct Recipient* recipients;
static size_t recipientCount;

// The ticked rows of the grid: all of them, or every other one. They are there before the clock starts.
static void readRecipients(bool half)
{
    sqlite3_stmt* select = prepare("SELECT IdCliente, email, Telefono2 FROM tabClienti ORDER BY IdCliente");
    size_t room = 0;
    for (size_t row = 0; sqlite3_step(select) == SQLITE_ROW; ++row) {
        if (half && row % 2 != 0)
            continue;
        if (recipientCount == room)
            recipients = need(realloc(recipients, (room = room * 2 + 1024) * sizeof *recipients));
        recipients[recipientCount++] = (struct Recipient){.id = sqlite3_column_int(select, 0),
                                                          .mail = sqlite3_column_bytes(select, 1) > 0,
                                                          .mobile = sqlite3_column_bytes(select, 2) > 0};
    }
    sqlite3_finalize(select);
}

// Columns of the statement that reads a customer.
enum
{
    FirstName,
    SecondName,
    Place,
    Province,
    Mobile,
    Email,
    Birth,
    ConsentSms,
    ConsentEmail
};

// Runs a statement that gives at most one row, to its end; the first column of that row.
static int64_t runOnce(sqlite3_stmt* statement)
{
    int64_t value = 0;
    int result = SQLITE_OK;
    while ((result = sqlite3_step(statement)) == SQLITE_ROW)
        value = sqlite3_column_int64(statement, 0);
    if (result != SQLITE_DONE)
        fail(sqlite3_sql(statement));
    check(sqlite3_reset(statement), "reset");
    return value;
}

static void bindText(sqlite3_stmt* statement, int at, const char* text)
{
    check(sqlite3_bind_text(statement, at, text, -1, SQLITE_TRANSIENT), "bind");
}

static int64_t nextId(sqlite3_stmt* statement)
{
    bindText(statement, 1, "TMK_MailingList");
    bindText(statement, 2, "idMailing");
    run(zulDoNotWaitForDisk);
    const int64_t id = runOnce(statement);
    run(zulWaitForDisk);
    return id;
}

// The current date and time, or one of them, as the tables keep it.
static const char* now(bool withDate, bool withTime)
{
    static char text[64];
    struct timespec clock;
    struct tm local;
    clock_gettime(CLOCK_REALTIME, &clock);
    localtime_r(&clock.tv_sec, &local);
    if (!withDate)
        local.tm_year = -1, local.tm_mon = 11, local.tm_mday = 30;
    if (!withTime)
        local.tm_hour = local.tm_min = local.tm_sec = 0, clock.tv_nsec = 0;
    snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d.%03ld", local.tm_year + 1900, local.tm_mon + 1,
             local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec, clock.tv_nsec / 1000000);
    return text;
}

static char* appendText(char* to, const char* end, const char* text, size_t length)
{
    if (length > (size_t)(end - to))
        fail("a message is too long");
    memcpy(to, text, length);
    return to + length;
}

static char* appendColumn(char* to, const char* end, sqlite3_stmt* customer, int column)
{
    const char* text = (const char*)sqlite3_column_text(customer, column);
    return text == NULL ? to : appendText(to, end, text, (size_t)sqlite3_column_bytes(customer, column));
}

// The template with the customer's data in its places.
static const char* fill(const char* template, sqlite3_stmt* customer)
{
    static const struct
    {
        const char* name;
        int column;
    } places[] = {{"{RagioneSociale1}", FirstName}, {"{RagioneSociale2}", SecondName}, {"{Paese}", Place},
                  {"{Provincia}", Province},        {"{Telefono2}", Mobile},           {"{email}", Email}};
    static char filled[65536];
    const char* const end = filled + sizeof filled - 1;
    char* to = filled;
    while (*template != '\0') {
        const size_t plain = strcspn(template, "{");
        to = appendText(to, end, template, plain);
        template += plain;
        if (*template == '\0')
            break;
        if (strncmp(template, "{Cliente}", 9) == 0) {
            to = appendColumn(to, end, customer, FirstName);
            to = appendText(to, end, " ", 1);
            to = appendColumn(to, end, customer, SecondName);
            template += 9;
            continue;
        }
        size_t i = 0;
        for (; i < sizeof places / sizeof places[0]; ++i) {
            if (strncmp(template, places[i].name, strlen(places[i].name)) == 0)
                break;
        }
        if (i < sizeof places / sizeof places[0]) {
            to = appendColumn(to, end, customer, places[i].column);
            template += strlen(places[i].name);
        } else {
            to = appendText(to, end, template ++, 1);
        }
    }
    *to = '\0';
    return filled;
}

static uint64_t prepareMails(void)
{
    sqlite3_stmt* customer = prepare(statementNamed("customer"));
    sqlite3_stmt* ids = prepare(statementNamed("nextId"));
    sqlite3_stmt* insert = prepare(statementNamed("mail"));
    const int32_t message = atoi(statementNamed("mailTemplate"));
    uint64_t rows = 0;
    for (size_t i = 0; i < recipientCount; ++i) {
        if (!recipients[i].mail)
            continue;
        check(sqlite3_bind_int(customer, 1, recipients[i].id), "bind");
        if (sqlite3_step(customer) == SQLITE_ROW && sqlite3_column_int(customer, ConsentEmail) != 0) {
            check(sqlite3_bind_text(insert, 5, (const char*)sqlite3_column_text(customer, Email), -1,
                                    SQLITE_TRANSIENT),
                  "bind");
            sqlite3_reset(customer);
            check(sqlite3_bind_int64(insert, 1, nextId(ids)), "bind");
            check(sqlite3_bind_int(insert, 2, 1), "bind");
            check(sqlite3_bind_int(insert, 3, message), "bind");
            check(sqlite3_bind_int(insert, 4, recipients[i].id), "bind");
            bindText(insert, 6, now(true, true));
            bindText(insert, 7, now(true, true));
            check(sqlite3_bind_int(insert, 8, 0), "bind");
            check(sqlite3_bind_int(insert, 9, -1), "bind");
            runOnce(insert);
            ++rows;
        } else {
            sqlite3_reset(customer);
        }
    }
    sqlite3_finalize(customer);
    sqlite3_finalize(ids);
    sqlite3_finalize(insert);
    return rows;
}

static uint64_t prepareMessages(void)
{
    sqlite3_stmt* customer = prepare(statementNamed("customer"));
    sqlite3_stmt* ids = prepare(statementNamed("nextId"));
    sqlite3_stmt* insert = prepare(statementNamed("sms"));
    sqlite3_stmt* template = prepare(statementNamed("template"));
    char* text = NULL;
    if (sqlite3_step(template) == SQLITE_ROW)
        text = need(strdup((const char*)sqlite3_column_text(template, 0)));
    sqlite3_finalize(template);
    if (text == NULL)
        fail("no template");
    uint64_t rows = 0;
    for (size_t i = 0; i < recipientCount; ++i) {
        if (!recipients[i].mobile)
            continue;
        check(sqlite3_bind_int(customer, 1, recipients[i].id), "bind");
        if (sqlite3_step(customer) == SQLITE_ROW && sqlite3_column_int(customer, ConsentSms) != 0) {
            bindText(insert, 4, fill(text, customer));
            check(sqlite3_bind_text(insert, 5, (const char*)sqlite3_column_text(customer, Mobile), -1,
                                    SQLITE_TRANSIENT),
                  "bind");
            sqlite3_reset(customer);
            check(sqlite3_bind_int64(insert, 1, nextId(ids)), "bind");
            check(sqlite3_bind_int(insert, 2, 6), "bind");
            bindText(insert, 3, "SMS");
            check(sqlite3_bind_int(insert, 6, recipients[i].id), "bind");
            bindText(insert, 7, "-1");
            check(sqlite3_bind_int(insert, 8, 1), "bind");
            check(sqlite3_bind_int(insert, 9, 1), "bind");
            check(sqlite3_bind_int(insert, 10, 1), "bind");
            check(sqlite3_bind_int(insert, 11, 0), "bind");
            bindText(insert, 12, now(true, false));
            bindText(insert, 13, now(false, true));
            bindText(insert, 14, "demo");
            runOnce(insert);
            ++rows;
        } else {
            sqlite3_reset(customer);
        }
    }
    free(text);
    sqlite3_finalize(customer);
    sqlite3_finalize(ids);
    sqlite3_finalize(insert);
    return rows;
}

int main(int argc, char** argv)
{
    if (argc != 5) {
        fprintf(stderr, "usage: limit search DATABASE STATEMENTS RUNS\n"
                        "       limit mail|sms DATABASE STATEMENTS all|half\n");
        return 2;
    }
    readStatements(argv[3]);
    openDatabase(argv[2]);
    if (strcmp(argv[1], "search") == 0) {
        search(atoi(argv[4]));
    } else {
        readRecipients(strcmp(argv[4], "half") == 0);
        start();
        const uint64_t rows = strcmp(argv[1], "mail") == 0 ? prepareMails() : prepareMessages();
        stop(rows);
        free(recipients);
    }
    printPeak();
    sqlite3_close(database);
    return 0;
}
