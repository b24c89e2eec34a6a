/* The functions that the module takes from a client library, none of which is called: a library that
   can do everything but attach. */

#ifdef _WIN32
#define EXPORTED(name) __declspec(dllexport) void name(void) {}
#else
#define EXPORTED(name) void name(void) {}
#endif

EXPORTED(isc_start_multiple)
EXPORTED(isc_commit_transaction)
EXPORTED(isc_rollback_transaction)
EXPORTED(isc_dsql_allocate_statement)
EXPORTED(isc_dsql_prepare)
EXPORTED(isc_dsql_describe)
EXPORTED(isc_dsql_execute)
EXPORTED(isc_dsql_execute_immediate)
EXPORTED(isc_dsql_fetch)
EXPORTED(isc_dsql_free_statement)
EXPORTED(isc_open_blob2)
EXPORTED(isc_get_segment)
EXPORTED(isc_close_blob)
EXPORTED(isc_sqlcode)
EXPORTED(fb_interpret)
EXPORTED(isc_detach_database)
