/* The usual client library, of which it takes everything else, with a server that dies just before the
   connection is closed: that call never returns. It says so in the file that TOLVANE_DETACHING names. */

#include <fcntl.h>
#include <ibase.h>
#include <stdlib.h>
#include <unistd.h>

ISC_STATUS ISC_EXPORT isc_detach_database(ISC_STATUS *status, isc_db_handle *handle) {
    (void)status;
    (void)handle;
    close(open(getenv("TOLVANE_DETACHING"), O_CREAT | O_WRONLY, 0600));
    for (;;)
        pause();
}
