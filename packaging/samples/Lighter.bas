Attribute VB_Name = "Lighter"
' Makes a picture lighter, in Visual Basic 6. Add this module and Qv8Effect.bas, which holds the declarations, to a
' project whose start is Sub Main, and put Qv8Effect.dll and Qv8Com.dll beside the program:
'
'   Lighter IN.bmp OUT.bmp            shows how far it is in the Immediate window
'   Lighter IN.bmp OUT.bmp PERCENT    cancels the work when it is that far, and writes nothing
'
' Names of files hold no blanks here. Not yet compiled or run: Visual Basic was not at hand.
Option Explicit

Private Declare Function GlobalAlloc Lib "kernel32" (ByVal flags As Long, ByVal bytes As Long) As Long
Private Declare Function GlobalLock Lib "kernel32" (ByVal block As Long) As Long
Private Declare Function GlobalUnlock Lib "kernel32" (ByVal block As Long) As Long
Private Declare Function GlobalFree Lib "kernel32" (ByVal block As Long) As Long
Private Declare Function GlobalSize Lib "kernel32" (ByVal block As Long) As Long
Private Declare Sub CopyMemory Lib "kernel32" Alias "RtlMoveMemory" (ByVal target As Long, ByVal source As Long, ByVal count As Long)

Private Const FileHeader As Long = 14
Private Const PictureHeader As Long = 40
Private cancelAt As Long

' What follows the 14 bytes of a BMP file's own header is a picture, as the library wants it.
Private Function ReadPicture(ByVal name As String) As Long
    Dim number As Integer, size As Long, begin As Long, headerSize As Long, bytes() As Byte, block As Long, place As Long
    number = FreeFile
    Open name For Binary Access Read As #number
    size = LOF(number) - FileHeader
    If size > PictureHeader Then
        ReDim bytes(0 To size - 1)
        Get #number, 11, begin
        Get #number, FileHeader + 1, bytes
        Get #number, FileHeader + 1, headerSize
    End If
    Close #number
    If size <= PictureHeader Or headerSize <> PictureHeader Then Exit Function
    block = GlobalAlloc(2, size)
    If block = 0 Then Exit Function
    place = GlobalLock(block)
    CopyMemory place, VarPtr(bytes(0)), size
    headerSize = FileHeader + PictureHeader + GetDibPalSize(place)
    GlobalUnlock block
    If headerSize = begin Then
        ReadPicture = block
    Else
        GlobalFree block
    End If
End Function

Private Sub WritePicture(ByVal name As String, ByVal block As Long)
    Dim number As Integer, size As Long, bytes() As Byte, place As Long, begin As Long
    size = GlobalSize(block)
    ReDim bytes(0 To size - 1)
    place = GlobalLock(block)
    CopyMemory VarPtr(bytes(0)), place, size
    begin = FileHeader + PictureHeader + GetDibPalSize(place)
    GlobalUnlock block
    number = FreeFile
    Open name For Binary Access Write As #number
    Put #number, 1, "BM"
    Put #number, 3, FileHeader + size
    Put #number, 7, 0&
    Put #number, 11, begin
    Put #number, FileHeader + 1, bytes
    Close #number
End Sub

' Is called at every report; 0 cancels. An error must not leave it.
Public Function OnProgress(ByVal percent As Long, ByVal context As Long) As Long
    On Error Resume Next
    Debug.Print percent; "%"
    OnProgress = IIf(percent < cancelAt, 1, 0)
End Function

Public Sub Main()
    Dim words() As String, target As ImageSet, lighter As Long, owner As Long
    words = Split(Command$, " ")
    If UBound(words) < 1 Then
        MsgBox "Lighter IN.bmp OUT.bmp [PERCENT]"
        Exit Sub
    End If
    cancelAt = 101
    If UBound(words) > 1 Then cancelAt = CLng(words(2))
    target.hImage = ReadPicture(words(0))
    If target.hImage = 0 Then
        MsgBox words(0) & " cannot be read"
        Exit Sub
    End If
    owner = AddProgressOwner(AddressOf OnProgress, 0)
    lighter = QV8RGBGamma(target, QV8_AREA_WHOLE, ByVal 0&, 0, ByVal 0&, 1, -0.5, -0.5, -0.5, owner, 0, 0, 0)
    RemoveProgressOwner owner
    If lighter <> 0 Then
        WritePicture words(1), lighter
        GlobalFree lighter
    Else
        MsgBox "Status " & GetErrorStatus()
    End If
    GlobalFree target.hImage
End Sub
