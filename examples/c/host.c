/* A host in one file: a main window with a menu command that opens the module's list.
 *
 *   host_c.exe DATABASE USER PASSWORD
 *
 * DATABASE is a name that the Firebird client takes, as 127.0.0.1/3050:C:\Shop\SHOP.FDB. The module
 * lies in the folder Operations beside the program. What the list's Print button prints is written
 * into printed.txt. Ends with 1 when something cannot be loaded or opened, with 2 when the list was
 * still open. */

#include <windows.h>

#include <commctrl.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

enum { START_COMMAND = 100, FIRST_CHILD = 5000, OPERATION_NUMBER = 1 };

/* The module's interface. A text is a pointer to its characters; this lies in front of them. */
struct text_header {
    uint16_t code_page;      /* 1251 */
    uint16_t element_size;   /* 1 */
    int32_t reference_count; /* -1: a constant */
    int32_t length;
};

struct database {
    uint32_t size;              /* of this record */
    void* handle;               /* points to the handle of the connection */
    const char* client_library; /* which has made that */
};

typedef void(__stdcall* print_code)(void* object, const uint8_t* title, const uint8_t* date_time,
                                    HWND grid);
struct print_proc {
    print_code code;
    void* object;
};

typedef void(__stdcall* get_text)(const char** result);
typedef void(__stdcall* set_module_string)(const char* text, int32_t number);
typedef void(__stdcall* operation_procedure)(HWND application, int32_t number, uint32_t* message,
                                             HWND main_form, const struct database* database,
                                             const char* text, struct print_proc print);

/* The two functions of the client library that a host needs. */
typedef intptr_t(__stdcall* attach_database)(intptr_t* status, short name_length, const char* name,
                                             uint32_t* handle, short block_length,
                                             const char* block);
typedef intptr_t(__stdcall* detach_database)(intptr_t* status, uint32_t* handle);

static HWND client;
static operation_procedure start_operation;
static uint32_t connection;
static uint32_t completion; /* the number of the message */
static int runs;

static void fail(const char* what) {
    fprintf(stderr, "host_c: %s\n", what);
    exit(1);
}

static void* find(HMODULE library, const char* name) {
    void* function = (void*)GetProcAddress(library, name);
    if (function == NULL) fail(name);
    return function;
}

/* A text that the module may keep: the record, then the characters and a zero byte. */
static const struct {
    struct text_header header;
    char characters[13];
} module_string = {{1251, 1, -1, 12}, "Example host"};

/* The module's texts are in code page 1251, whatever this computer's is. */
static void wide_text(const char* text, WCHAR* wide, int size) {
    int32_t length = 0;
    if (text != NULL) memcpy(&length, text - sizeof length, sizeof length);
    length = MultiByteToWideChar(1251, 0, text, length, wide, size - 1);
    wide[length] = 0;
}

static void print_cell(FILE* file, HWND grid, int row, int column) {
    WCHAR wide[256] = L"";
    char text[256] = "";
    LVITEMW item = {.iSubItem = column, .pszText = wide, .cchTextMax = 256};
    SendMessageW(grid, LVM_GETITEMTEXTW, (WPARAM)row, (LPARAM)&item);
    WideCharToMultiByte(1251, 0, wide, -1, text, sizeof text, NULL, NULL);
    fprintf(file, "%s%s", column == 0 ? "" : "\t", text);
}

/* The print service. The first byte of the two texts is their length. */
static void __stdcall print_list(void* object, const uint8_t* title, const uint8_t* date_time,
                                 HWND grid) {
    FILE* file = fopen(object, "w");
    if (file == NULL) return;
    HWND header = (HWND)SendMessageW(grid, LVM_GETHEADER, 0, 0);
    int columns = (int)SendMessageW(header, HDM_GETITEMCOUNT, 0, 0);
    int rows = (int)SendMessageW(grid, LVM_GETITEMCOUNT, 0, 0);
    fprintf(file, "%.*s\n", title[0], (const char*)title + 1);
    fprintf(file, "%.*s\n", date_time[0], (const char*)date_time + 1);
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column)
            print_cell(file, grid, row, column);
        fputc('\n', file);
    }
    fclose(file);
}

static void start(HWND frame) {
    /* The module reads these only during the call; the cell with the handle must stay. */
    struct database database = {sizeof database, &connection, "fbclient.dll"};
    struct print_proc print = {print_list, "printed.txt"};
    ++runs;
    start_operation(frame, OPERATION_NUMBER, &completion, frame, &database, NULL, print);
}

static LRESULT CALLBACK on_message(HWND frame, UINT message, WPARAM wparam, LPARAM lparam) {
    if (completion != 0 && message == completion) {
        runs = 0; /* the list has closed, or could not be opened */
        return 0;
    }
    switch (message) {
        case WM_CREATE: {
            CLIENTCREATESTRUCT create = {NULL, FIRST_CHILD};
            client = CreateWindowW(L"MDIClient", NULL, WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN, 0,
                                   0, 0, 0, frame, NULL, GetModuleHandleW(NULL), &create);
            return client != NULL ? 0 : -1;
        }
        case WM_COMMAND:
            if (LOWORD(wparam) != START_COMMAND) break;
            start(frame);
            return 0;
        case WM_DESTROY:
            PostQuitMessage(0);
            return 0;
    }
    return DefFrameProcW(frame, client, message, wparam, lparam);
}

static void make_window(const WCHAR* title) {
    WNDCLASSW class = {.lpfnWndProc = on_message,
                       .hInstance = GetModuleHandleW(NULL),
                       .lpszClassName = L"ExampleHost"};
    HMENU menu = CreateMenu();
    AppendMenuW(menu, MF_STRING, START_COMMAND, title);
    RegisterClassW(&class);
    if (CreateWindowW(L"ExampleHost", title, WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 1000, 700,
                      NULL, menu, class.hInstance, NULL) == NULL)
        fail("no main window");
}

static void run_messages(void) {
    MSG message;
    while (GetMessageW(&message, NULL, 0, 0) > 0) {
        if (TranslateMDISysAccel(client, &message)) continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

static size_t add_item(char* block, size_t length, char item, const char* text) {
    size_t size = strlen(text);
    if (size > 100) fail("too long a name or a password");
    block[length] = item;
    block[length + 1] = (char)size;
    memcpy(block + length + 2, text, size);
    return length + 2 + size;
}

/* Opens the connection: character set WIN1251. */
static void open_connection(HMODULE library, char** arguments) {
    attach_database attach = (attach_database)find(library, "isc_attach_database");
    intptr_t status[20] = {0};
    char block[400] = {1};
    size_t length = add_item(block, 1, 28, arguments[2]);
    length = add_item(block, length, 29, arguments[3]);
    length = add_item(block, length, 48, "WIN1251");
    if (attach(status, 0, arguments[1], &connection, (short)length, block) != 0)
        fail("no connection to the database");
}

int main(int count, char** arguments) {
    const char* title = NULL;
    WCHAR wide_title[256];
    intptr_t status[20];
    if (count != 4) fail("DATABASE USER PASSWORD");
    HMODULE database_library = LoadLibraryW(L"fbclient.dll");
    if (database_library == NULL) fail("no fbclient.dll");
    open_connection(database_library, arguments);

    WCHAR path[MAX_PATH + 30];
    GetModuleFileNameW(NULL, path, MAX_PATH);
    wcscpy(wcsrchr(path, L'\\') + 1, L"Operations\\Tolvane.dll");
    HMODULE module = LoadLibraryW(path);
    if (module == NULL) fail("no Operations\\Tolvane.dll");
    ((get_text)find(module, "GetOperationTitle"))(&title);
    ((set_module_string)find(module, "SetTQ4ModuleString"))(module_string.characters,
                                                            OPERATION_NUMBER);
    start_operation = (operation_procedure)find(module, "OperationProcedure");

    wide_text(title, wide_title, 256);
    make_window(wide_title);
    run_messages();
    FreeLibrary(module);
    ((detach_database)find(database_library, "isc_detach_database"))(status, &connection);
    return runs == 0 ? 0 : 2;
}
