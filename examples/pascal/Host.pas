{ A host in one file: a main window with a menu command that opens the module's list.

    host_pascal.exe DATABASE USER PASSWORD

  DATABASE is a name that the Firebird client takes, as 127.0.0.1/3050:C:\Shop\SHOP.FDB. The module
  lies in the folder Operations beside the program. What the list's Print button prints is written
  into printed.txt. Ends with 1 when something cannot be loaded or opened, with 2 when the list was
  still open. }
program Host;

{$mode objfpc}{$H+}
{$apptype console}

uses
  Windows;

const
  StartCommand = 100;
  FirstChild = 5000;
  OperationNumber = 1;
  Cyrillic = 1251;

type
  { The module's interface. Its texts are long strings, those of the print service short strings. }
  THostDatabase = packed record
    Size: LongWord;          { of this record }
    Handle: Pointer;         { to the handle of the connection }
    ClientLibrary: PAnsiChar; { which has made that }
  end;
  PHostDatabase = ^THostDatabase;

  { A method is two words, and passed as a TMethod: of a method itself, Free Pascal passes the
    address. }
  TPrintProc = procedure(const Title, DateTime: ShortString; Grid: HWND) of object; stdcall;

  TGetText = procedure(var Text: AnsiString); stdcall;
  TSetModuleString = procedure(const Text: AnsiString; Number: LongInt); stdcall;
  TOperationProcedure = procedure(AppHandle: HWND; Number: LongInt; var MessageId: LongWord;
    MainForm: HWND; Database: PHostDatabase; const Text: AnsiString; Print: TMethod); stdcall;

  { The two functions of the client library that a host needs. }
  TStatus = array[0..19] of PtrInt;
  TAttachDatabase = function(var Status: TStatus; NameLength: SmallInt; Name: PAnsiChar;
    var Handle: LongWord; BlockLength: SmallInt; Block: PAnsiChar): PtrInt; stdcall;
  TDetachDatabase = function(var Status: TStatus; var Handle: LongWord): PtrInt; stdcall;

  TPrintService = class
    FileName: AnsiString;
    procedure Print(const Title, DateTime: ShortString; Grid: HWND); stdcall;
  end;

  { As the list view control has it. }
  TItem = record
    Mask: UINT;
    Item, SubItem: LongInt;
    State, StateMask: UINT;
    Text: PWideChar;
    TextMax, Image: LongInt;
    Param: LPARAM;
  end;

var
  Client: HWND;
  StartOperation: TOperationProcedure;
  PrintService: TPrintService;
  Connection: LongWord;
  Completion: LongWord; { the number of the message }
  Runs: Integer;

procedure Fail(const What: AnsiString);
begin
  WriteLn(StdErr, 'host_pascal: ', What);
  Halt(1);
end;

function Find(Library_: HMODULE; Name: PAnsiChar): Pointer;
begin
  Result := GetProcAddress(Library_, Name);
  if Result = nil then
    Fail(Name);
end;

function Cell(Grid: HWND; Row, Column: Integer): AnsiString;
var
  Item: TItem;
  Wide: array[0..255] of WideChar;
  Text: array[0..255] of AnsiChar;
begin
  FillChar(Item, SizeOf(Item), 0);
  Wide[0] := #0;
  Item.SubItem := Column;
  Item.Text := @Wide;
  Item.TextMax := Length(Wide);
  SendMessageW(Grid, LVM_GETITEMTEXTW, Row, LPARAM(@Item));
  WideCharToMultiByte(Cyrillic, 0, @Wide, -1, @Text, SizeOf(Text), nil, nil);
  Result := PAnsiChar(@Text);
end;

procedure TPrintService.Print(const Title, DateTime: ShortString; Grid: HWND); stdcall;
const
  GetHeader = $101F;
var
  Columns, Row, Column: Integer;
  Printed: Text;
begin
  Assign(Printed, FileName);
  Rewrite(Printed);
  WriteLn(Printed, Title);
  WriteLn(Printed, DateTime);
  Columns := SendMessageW(HWND(SendMessageW(Grid, GetHeader, 0, 0)), HDM_GETITEMCOUNT, 0, 0);
  for Row := 0 to SendMessageW(Grid, LVM_GETITEMCOUNT, 0, 0) - 1 do
  begin
    Write(Printed, Cell(Grid, Row, 0));
    for Column := 1 to Columns - 1 do
      Write(Printed, #9, Cell(Grid, Row, Column));
    WriteLn(Printed);
  end;
  Close(Printed);
end;

procedure Start(Frame: HWND);
var
  Database: THostDatabase;
  Print: TPrintProc;
begin
  { The module reads the record only during the call; the cell with the handle must stay. }
  Database.Size := SizeOf(Database);
  Database.Handle := @Connection;
  Database.ClientLibrary := 'fbclient.dll';
  Print := @PrintService.Print;
  Inc(Runs);
  StartOperation(Frame, OperationNumber, Completion, Frame, @Database, '', TMethod(Print));
end;

function OnMessage(Frame: HWND; Message: UINT; WParam: WPARAM; LParam: LPARAM): LRESULT; stdcall;
var
  Child: TClientCreateStruct;
begin
  Result := 0;
  if (Completion <> 0) and (Message = Completion) then
    Runs := 0 { the list has closed, or could not be opened }
  else if Message = WM_CREATE then
  begin
    Child.hWindowMenu := 0;
    Child.idFirstChild := FirstChild;
    Client := CreateWindowExW(0, 'MDIClient', nil, WS_CHILD or WS_VISIBLE or WS_CLIPCHILDREN,
      0, 0, 0, 0, Frame, 0, HInstance, @Child);
  end
  else if (Message = WM_COMMAND) and (LOWORD(WParam) = StartCommand) then
    Start(Frame)
  else if Message = WM_DESTROY then
    PostQuitMessage(0)
  else
    Result := DefFrameProcW(Frame, Client, Message, WParam, LParam);
end;

procedure MakeWindow(const Title: UnicodeString);
var
  WindowClass: TWndClassW;
  Menu: HMENU;
begin
  FillChar(WindowClass, SizeOf(WindowClass), 0);
  WindowClass.lpfnWndProc := WNDPROC(@OnMessage);
  WindowClass.hInstance := HInstance;
  WindowClass.lpszClassName := 'ExampleHost';
  RegisterClassW(WindowClass);
  Menu := CreateMenu;
  AppendMenuW(Menu, MF_STRING, StartCommand, PWideChar(Title));
  if CreateWindowExW(0, 'ExampleHost', PWideChar(Title), WS_OVERLAPPEDWINDOW or WS_VISIBLE,
    0, 0, 1000, 700, 0, Menu, HInstance, nil) = 0 then
    Fail('no main window');
end;

procedure RunMessages;
var
  Message: TMsg;
begin
  while GetMessageW(Message, 0, 0, 0) do
    if not TranslateMDISysAccel(Client, Message) then
    begin
      TranslateMessage(Message);
      DispatchMessageW(Message);
    end;
end;

function Item(Code: Byte; const Text: ShortString): AnsiString;
begin
  Result := Chr(Code) + Chr(Length(Text)) + Text;
end;

{ Opens the connection: character set WIN1251. }
procedure OpenConnection(Library_: HMODULE);
var
  Attach: TAttachDatabase;
  Status: TStatus;
  Block: AnsiString;
begin
  Attach := TAttachDatabase(Find(Library_, 'isc_attach_database'));
  Block := #1 + Item(28, ParamStr(2)) + Item(29, ParamStr(3)) + Item(48, 'WIN1251');
  if Attach(Status, 0, PAnsiChar(ParamStr(1)), Connection, Length(Block), PAnsiChar(Block)) <> 0 then
    Fail('no connection to the database');
end;

function ModulePath: UnicodeString;
var
  Path: array[0..MAX_PATH] of WideChar;
  Size: Integer;
begin
  Size := GetModuleFileNameW(0, @Path, MAX_PATH);
  while (Size > 0) and (Path[Size - 1] <> '\') do
    Dec(Size);
  SetString(Result, PWideChar(@Path), Size);
  Result := Result + 'Operations\Tolvane.dll';
end;

var
  DatabaseLibrary, Module: HMODULE;
  Title: AnsiString;
  Status: TStatus;

begin
  if ParamCount <> 3 then
    Fail('DATABASE USER PASSWORD');
  DatabaseLibrary := LoadLibraryW('fbclient.dll');
  if DatabaseLibrary = 0 then
    Fail('no fbclient.dll');
  OpenConnection(DatabaseLibrary);

  Module := LoadLibraryW(PWideChar(ModulePath));
  if Module = 0 then
    Fail('no Operations\Tolvane.dll');
  Title := '';
  TGetText(Find(Module, 'GetOperationTitle'))(Title);
  TSetModuleString(Find(Module, 'SetTQ4ModuleString'))('Example host', OperationNumber);
  StartOperation := TOperationProcedure(Find(Module, 'OperationProcedure'));

  PrintService := TPrintService.Create;
  PrintService.FileName := 'printed.txt';
  { The text says that it is in code page 1251, and is converted from that. }
  MakeWindow(UnicodeString(Title));
  RunMessages;
  FreeLibrary(Module);
  TDetachDatabase(Find(DatabaseLibrary, 'isc_detach_database'))(Status, Connection);
  if Runs <> 0 then
    Halt(2);
end.
