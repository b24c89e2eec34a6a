/* fbclient.dll for Wine: every function is handed to the system's own 32-bit libfbclient.so.2.
   Built by winegcc; the plain forwards come from functions.txt. */

#undef WIN32
#undef _WIN32
#undef __WIN32__
#include <ibase.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>

/* Old programs call isc_interprete; that it is deprecated is no news here. */
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

#define FORWARD __attribute__((stdcall))

#include "forwards.h"

enum { kMostDatabases = 16 };

/* One entry of the array that isc_start_multiple takes. */
struct TBlock {
    isc_db_handle* database;
    long parametersLength;
    const ISC_SCHAR* parameters;
};

/* The callers' convention for a variable list is the same on both sides, but the list itself cannot
   be handed on; the library has the same function with an array. */
ISC_STATUS forward_isc_start_transaction(ISC_STATUS* status, isc_tr_handle* transaction, short count,
                                         ...)
{
    struct TBlock blocks[kMostDatabases];
    va_list list;
    short i;
    if (count < 0 || count > kMostDatabases) {
        count = 0; /* the library refuses an empty list with a status of its own */
    }
    va_start(list, count);
    for (i = 0; i < count; ++i) {
        blocks[i].database = va_arg(list, isc_db_handle*);
        blocks[i].parametersLength = va_arg(list, int);
        blocks[i].parameters = va_arg(list, ISC_SCHAR*);
    }
    va_end(list);
    return isc_start_multiple(status, transaction, count, blocks);
}

/* A Windows program's `struct tm` ends after the nine numbers; the one here is longer, and the
   library clears the whole of it. */
enum { kWindowsTimeSize = 9 * sizeof(int) };

static void ToWindows(const struct tm* time, void* windowsTime)
{
    memcpy(windowsTime, time, kWindowsTimeSize);
}

static struct tm FromWindows(const void* windowsTime)
{
    struct tm time;
    memset(&time, 0, sizeof time);
    memcpy(&time, windowsTime, kWindowsTimeSize);
    return time;
}

void FORWARD forward_isc_decode_sql_date(const ISC_DATE* date, void* windowsTime)
{
    struct tm time;
    isc_decode_sql_date(date, &time);
    ToWindows(&time, windowsTime);
}

void FORWARD forward_isc_decode_sql_time(const ISC_TIME* sqlTime, void* windowsTime)
{
    struct tm time;
    isc_decode_sql_time(sqlTime, &time);
    ToWindows(&time, windowsTime);
}

void FORWARD forward_isc_decode_timestamp(const ISC_TIMESTAMP* timestamp, void* windowsTime)
{
    struct tm time;
    isc_decode_timestamp(timestamp, &time);
    ToWindows(&time, windowsTime);
}

void FORWARD forward_isc_encode_sql_date(const void* windowsTime, ISC_DATE* date)
{
    const struct tm time = FromWindows(windowsTime);
    isc_encode_sql_date(&time, date);
}

void FORWARD forward_isc_encode_sql_time(const void* windowsTime, ISC_TIME* sqlTime)
{
    const struct tm time = FromWindows(windowsTime);
    isc_encode_sql_time(&time, sqlTime);
}

void FORWARD forward_isc_encode_timestamp(const void* windowsTime, ISC_TIMESTAMP* timestamp)
{
    const struct tm time = FromWindows(windowsTime);
    isc_encode_timestamp(&time, timestamp);
}

/* There is no engine that could open a file without a server. A file of Wine's drive Z, which is the
   system's root, is opened by the server that TOLVANE_FB_SERVER names. */
enum { kLongestName = 1024 };

/* A length of 0: the name ends with a zero byte. */
static const ISC_SCHAR* NameFor(const ISC_SCHAR* name, short* length, char* room)
{
    const char* server = getenv("TOLVANE_FB_SERVER");
    const int given = *length != 0 ? *length : (int)strlen(name);
    char* at = room;
    if (server == NULL || given < 3 || (name[0] != 'Z' && name[0] != 'z') || name[1] != ':' ||
        name[2] != '\\') {
        return name;
    }
    snprintf(room, kLongestName, "%s:%.*s", server, given - 2, name + 2);
    while ((at = strchr(at, '\\')) != NULL) {
        *at = '/';
    }
    *length = 0;
    return room;
}

ISC_STATUS FORWARD forward_isc_attach_database(ISC_STATUS* status, short length,
                                               const ISC_SCHAR* name, isc_db_handle* database,
                                               short blockLength, const ISC_SCHAR* block)
{
    char room[kLongestName];
    const ISC_SCHAR* used = NameFor(name, &length, room);
    return isc_attach_database(status, length, used, database, blockLength, block);
}

ISC_STATUS FORWARD forward_isc_create_database(ISC_STATUS* status, short length,
                                               const ISC_SCHAR* name, isc_db_handle* database,
                                               short blockLength, const ISC_SCHAR* block,
                                               short type)
{
    char room[kLongestName];
    const ISC_SCHAR* used = NameFor(name, &length, room);
    return isc_create_database(status, length, used, database, blockLength, block, type);
}
