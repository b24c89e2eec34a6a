{ Fetches all rows of a query as a program written in Free Pascal would.

    pascal_fetch DATABASE PASSWORD QUERYFILE

  Prints milliseconds, the peak of the physical memory in bytes, and the number of rows. }
program PascalFetch;

{$mode objfpc}{$H+}

uses
  Classes, SysUtils, Unix, BaseUnix, SQLDB, IBConnection;

function PeakMemory: Int64;
var
  Status: TextFile;
  Line: string;
begin
  Result := 0;
  AssignFile(Status, '/proc/self/status');
  Reset(Status);
  while not Eof(Status) do
  begin
    ReadLn(Status, Line);
    if Copy(Line, 1, 6) = 'VmHWM:' then
      Result := StrToInt64(Trim(Copy(Line, 7, Pos('kB', Line) - 7))) * 1024;
  end;
  CloseFile(Status);
end;

function Microseconds: Int64;
var
  Now: TTimeVal;
begin
  fpGetTimeOfDay(@Now, nil);
  Result := Int64(Now.tv_sec) * 1000000 + Now.tv_usec;
end;

var
  Connection: TIBConnection;
  Transaction: TSQLTransaction;
  Query: TSQLQuery;
  Started: Int64;
  Milliseconds: Double;
  Point: TFormatSettings;

begin
  Connection := TIBConnection.Create(nil);
  Transaction := TSQLTransaction.Create(nil);
  Query := TSQLQuery.Create(nil);
  Connection.DatabaseName := ParamStr(1);
  Connection.UserName := 'SYSDBA';
  Connection.Password := ParamStr(2);
  Connection.CharSet := 'WIN1251';
  Connection.Transaction := Transaction;
  Connection.Open;
  Query.DataBase := Connection;
  Query.Transaction := Transaction;
  Query.SQL.LoadFromFile(ParamStr(3));
  Query.ParseSQL := False;
  Query.ReadOnly := True;
  Query.PacketRecords := -1;
  Started := Microseconds;
  Query.Open;
  Milliseconds := (Microseconds - Started) / 1000;
  Point := DefaultFormatSettings;
  Point.DecimalSeparator := '.';
  WriteLn(Format('%.1f %d %d', [Milliseconds, PeakMemory, Query.RecordCount], Point));
  Query.Free;
  Transaction.Free;
  Connection.Free;
end.
