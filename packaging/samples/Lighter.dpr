{ Makes a picture lighter, in Delphi (from version 7 on) or Free Pascal:

    Lighter IN.bmp OUT.bmp            tells how far it is
    Lighter IN.bmp OUT.bmp PERCENT    cancels the work when it is that far, and writes nothing

  Qv8Effect.pas holds the declarations. Delphi:  dcc32 -CC Lighter.dpr     Free Pascal:  fpc -Mdelphi Lighter.dpr

  Built and run with Free Pascal, on Linux; Delphi's own compiler was not at hand. }
program Lighter;

{$APPTYPE CONSOLE}

uses
  {$IFDEF MSWINDOWS} Windows, {$ENDIF} SysUtils, Classes, Qv8Effect;

{$IFNDEF MSWINDOWS}
const
  Platform = 'libQv8Platform.so.0';

function GlobalAlloc(flags: Cardinal; bytes: TQv8Word): TQv8Handle; cdecl; external Platform name 'qv8_GlobalAlloc';
function GlobalLock(block: TQv8Handle): Pointer; cdecl; external Platform name 'qv8_GlobalLock';
function GlobalUnlock(block: TQv8Handle): Integer; cdecl; external Platform name 'qv8_GlobalUnlock';
function GlobalFree(block: TQv8Handle): TQv8Handle; cdecl; external Platform name 'qv8_GlobalFree';
function GlobalSize(block: TQv8Handle): TQv8Word; cdecl; external Platform name 'qv8_GlobalSize';
{$ENDIF}

const
  FileHeader = 14;
  PictureHeader = 40;

type
  { The header of a BMP file. }
  TFileHeader = packed record
    kind: Word;
    size: LongWord;
    unused: LongWord;
    begins: LongWord;
  end;

var
  cancelAt: Integer = 101;
  told: Integer = -1;

{ What follows the 14 bytes of a BMP file's own header is a picture, as the library wants it. }
function ReadPicture(const name: string): TQv8Handle;
var
  stream: TFileStream;
  header: TFileHeader;
  bytes: PLongWord;
  size: Integer;
  wanted: Boolean;
begin
  Result := 0;
  stream := TFileStream.Create(name, fmOpenRead or fmShareDenyWrite);
  try
    size := stream.Size - FileHeader;
    if size > PictureHeader then
      Result := GlobalAlloc(2, size);
    if Result = 0 then
      raise Exception.Create(name + ' is no BMP file');
    bytes := GlobalLock(Result);
    stream.ReadBuffer(header, FileHeader);
    stream.ReadBuffer(bytes^, size);
    wanted := (header.kind = $4D42) and (bytes^ = PictureHeader) and
      (Integer(header.begins) = FileHeader + PictureHeader + GetDibPalSize(bytes));
    GlobalUnlock(Result);
    if not wanted then
    begin
      GlobalFree(Result);
      raise Exception.Create(name + ' is not a BMP file of the usual kind');
    end;
  finally
    stream.Free;
  end;
end;

procedure WritePicture(const name: string; picture: TQv8Handle);
var
  stream: TFileStream;
  header: TFileHeader;
  bytes: Pointer;
begin
  stream := TFileStream.Create(name, fmCreate);
  bytes := GlobalLock(picture);
  try
    header.kind := $4D42;
    header.size := FileHeader + GlobalSize(picture);
    header.unused := 0;
    header.begins := FileHeader + PictureHeader + GetDibPalSize(bytes);
    stream.WriteBuffer(header, FileHeader);
    stream.WriteBuffer(bytes^, GlobalSize(picture));
  finally
    GlobalUnlock(picture);
    stream.Free;
  end;
end;

{ Is called at every report; 0 cancels. An exception must not leave it. }
function OnProgress(percent: Integer; context: Pointer): Integer; stdcall;
begin
  if percent div 25 <> told then
  begin
    told := percent div 25;
    WriteLn(percent, ' %');
  end;
  Result := Ord(percent < cancelAt);
end;

var
  target: TImageSet;
  made: TQv8Handle;
  owner: LongWord;
begin
  if ParamCount < 2 then
  begin
    WriteLn('usage: Lighter IN.bmp OUT.bmp [PERCENT]');
    Halt(2);
  end;
  if ParamCount > 2 then
    cancelAt := StrToInt(ParamStr(3));
  target.hImage := ReadPicture(ParamStr(1));
  target.hMask := 0;
  owner := AddProgressOwner(@OnProgress, nil);
  made := QV8RGBGamma(@target, QV8_AREA_WHOLE, nil, 0, nil, 1, -0.5, -0.5, -0.5, owner, 0, 0, 0);
  RemoveProgressOwner(owner);
  WriteLn(GetErrorStatusText(GetErrorStatus));
  if made <> 0 then
  begin
    WritePicture(ParamStr(2), made);
    GlobalFree(made);
  end;
  GlobalFree(target.hImage);
  if made = 0 then
    Halt(1);
end.
