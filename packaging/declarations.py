#!/usr/bin/env python3
"""Writes the declarations of the public headers for C#, Visual Basic 6, Delphi and Python.

  packaging/declarations.py FOLDER

What the headers say is read, so nothing is told twice; a type that is not in the table below ends it with an error.
"""
import re
import sys
from pathlib import Path

INCLUDE = Path(__file__).resolve().parent.parent / "include"
LIBRARIES = (("Qv8Com", "qv8com.h"), ("Qv8Com", "qv8version.h"), ("Qv8Effect", "qv8effect.h"))
NOTE = "Declarations of Qv8Effect {version}; the headers qv8effect.h and qv8com.h document every function."

# C type: C#, Visual Basic 6, Delphi, Python. A C# or Visual Basic type with a blank is a whole parameter's.
TYPES = {
    "void": ("void", "", "", "None"),
    "int": ("int", "Long", "Integer", "c_int"),
    "LONG": ("int", "Long", "Integer", "c_int"),
    "BOOL": ("int", "Long", "Integer", "c_int"),
    "QV8BOOL": ("int", "Long", "Integer", "c_int"),
    "DWORD": ("uint", "Long", "LongWord", "c_uint32"),
    "DWORD_PTR": ("UIntPtr", "Long", "TQv8Word", "c_size_t"),
    "double": ("double", "Double", "Double", "c_double"),
    "HGLOBAL": ("IntPtr", "Long", "TQv8Handle", "c_void_p"),
    "HWND": ("IntPtr", "Long", "TQv8Handle", "c_void_p"),
    "LPCSTR": ("IntPtr", "Long", "PAnsiChar", "c_char_p"),
    "const void*": ("IntPtr", "Long", "Pointer", "c_void_p"),
    "void*": ("IntPtr", "Long", "Pointer", "c_void_p"),
    "const char*": ("string", "String", "PAnsiChar", "c_char_p"),
    "const BYTE*": ("byte[]", "ref Any", "PByte", "POINTER(c_ubyte)"),
    "const LONG*": ("int[]", "ref Any", "PInteger", "POINTER(c_int)"),
    "const POINT*": ("Point[]", "ref Any", "PPoint", "POINTER(POINT)"),
    "const RECT*": ("Rect", "ref Any", "PRect", "POINTER(RECT)"),
    "const ImageSet*": ("ref ImageSet", "ref ImageSet", "PImageSet", "POINTER(ImageSet)"),
    "ImageSet*": ("out ImageSet", "ref ImageSet", "PImageSet", "POINTER(ImageSet)"),
    "ImageSet": ("ImageSet", "", "", "ImageSet"),
    "Qv8ProgressCallback": ("ProgressCallback", "Long", "TQv8ProgressCallback", "ProgressCallback"),
}
CSHARP, BASIC, DELPHI, PYTHON = range(4)


def code_of(name):
    return re.sub(r"/\*.*?\*/", "", (INCLUDE / name).read_text(), flags=re.S)


def split_type(declared):
    """A parameter's type and name."""
    kind, name = re.fullmatch(r"(.*?[\s*])(\w+)", declared.strip()).groups()
    return re.sub(r"\s*\*", "*", kind.strip()), name


def functions():
    """Of every function: its library, returned type, name, and parameters as (type, name)."""
    pattern = re.compile(r"QV8\w+_EXPORT\s+([\w\s]+?\*?)\s*QV8API\s+(\w+)\(([^)]*)\)")
    for library, header in LIBRARIES:
        for returned, name, parameters in pattern.findall(code_of(header)):
            parameters = " ".join(parameters.split())
            yield library, returned.strip(), name, [] if parameters == "void" else [split_type(p) for p in parameters.split(",")]


def constants():
    for _, header in LIBRARIES:
        for body in re.findall(r"enum\s*\{([^}]*)\}", code_of(header)):
            yield from re.findall(r"(QV8_\w+)\s*=\s*(\w+)", body)
    yield from re.findall(r"#define (QV8_PROGRESS_CANCEL) (\d+)", code_of("qv8com.h"))


def version():
    return ".".join(re.findall(r"#define QV8_VERSION_(?:MAJOR|MINOR|PATCH) (\d+)", code_of("qv8version.h")))


def wrap(text, begin, limit=118):
    """Breaks a long line between parameters; further lines begin with `begin`."""
    lines = []
    while len(text) > limit:
        at = max(text.rfind(", ", 0, limit), text.rfind("; ", 0, limit)) + 1
        lines.append(text[:at])
        text = begin + text[at + 1 :]
    return "\n".join([*lines, text])


def csharp():
    def parameter(kind, name):
        return f"{TYPES[kind][CSHARP]} {'@' if name == 'base' else ''}{name}"  # which is a word of C#

    lines = [f"// {NOTE}", "using System;", "using System.Runtime.InteropServices;", "", "public static class Qv8", "{"]
    lines += [f"    public const uint {name} = {value};" for name, value in constants()]
    lines += [
        "",
        "    [StructLayout(LayoutKind.Sequential)] public struct ImageSet { public IntPtr hImage, hMask; }",
        "    [StructLayout(LayoutKind.Sequential)] public struct Point { public int x, y; }",
        "    // A class, so that null may be passed.",
        "    [StructLayout(LayoutKind.Sequential)] public class Rect { public int left, top, right, bottom; }",
        "    [UnmanagedFunctionPointer(CallingConvention.StdCall)]",
        "    public delegate int ProgressCallback(int percent, IntPtr context);",
    ]
    for library, returned, name, parameters in functions():
        listed = ", ".join(parameter(*p) for p in parameters)
        text = f"    public static extern {TYPES[returned][CSHARP]} {name}({listed});"
        lines += ["", f'    [DllImport("{library}", ExactSpelling = true)]', wrap(text, " " * 8)]
    return lines + ["}"]


def basic():
    def parameter(kind, name):
        by, _, kind = ("ByVal ref " + TYPES[kind][BASIC]).rpartition("ref ")
        return f"{'ByRef' if by.count('ref') else 'ByVal'} {name} As {kind}"

    yield 'Attribute VB_Name = "Qv8Effect"'
    yield f"' {NOTE}"
    yield "' The functions that return a pair of pictures are left out, as Visual Basic cannot take one: call their Ex forms."
    yield "' For what may be null pass ByVal 0&."
    yield "Option Explicit"
    yield ""
    yield from (f"Public Const {name} As Long = {value}" for name, value in constants())
    yield from ["", "Public Type ImageSet", "    hImage As Long", "    hMask As Long", "End Type"]
    yield from ["", "Public Type Qv8Point", "    x As Long", "    y As Long", "End Type"]
    yield from ["", "Public Type Qv8Rect", *(f"    {side} As Long" for side in ("left", "top", "right", "bottom")), "End Type", ""]
    for library, returned, name, parameters in functions():
        if returned != "ImageSet":
            what = "Sub" if returned == "void" else "Function"
            result = "" if returned == "void" else f" As {TYPES[returned][BASIC]}"
            text = f'Public Declare {what} {name} Lib "{library}.dll" ({", ".join(parameter(*p) for p in parameters)}){result}'
            yield wrap(text, "    ").replace("\n", " _\n")


def delphi():
    yield f"{{ {NOTE}"
    yield "  The functions that return a pair of pictures are left out, as compilers differ in how: call their Ex forms. }"
    yield from ["unit Qv8Effect;", "", "interface", "", "{$IFDEF MSWINDOWS} uses Windows; {$ELSE} uses Types; {$ENDIF}", "", "const"]
    yield from (f"  {name} = {value};" for name, value in constants())
    yield from ["", "type", "  {$IFDEF FPC} TQv8Word = PtrUInt; {$ELSE}"]
    yield "  {$IFDEF WIN64} TQv8Word = NativeUInt; {$ELSE} TQv8Word = LongWord; {$ENDIF} {$ENDIF}"
    yield "  {$IFDEF MSWINDOWS} TQv8Handle = HGLOBAL; {$ELSE} TQv8Handle = TQv8Word; {$ENDIF}"
    yield from ["  TImageSet = record", "    hImage: TQv8Handle;", "    hMask: TQv8Handle;", "  end;", "  PImageSet = ^TImageSet;"]
    yield "  TQv8ProgressCallback = function(percent: Integer; context: Pointer): Integer; stdcall;"
    yield ""
    bodies = []
    for library, returned, name, parameters in functions():
        if returned != "ImageSet":
            listed = "; ".join(f"{name}: {TYPES[kind][DELPHI]}" for kind, name in parameters)
            what = "procedure" if returned == "void" else "function"
            result = "" if returned == "void" else f": {TYPES[returned][DELPHI]}"
            yield wrap(f"{what} {name}{f'({listed})' if listed else ''}{result}; stdcall;", "  ")
            bodies.append(f"{what} {name}; external {library}File name '{name}';")
    yield from ["", "implementation", "", "const"]
    for library in dict(LIBRARIES):
        yield f"  {library}File = {{$IFDEF MSWINDOWS}} '{library}.dll' {{$ELSE}} 'lib{library}.so.0' {{$ENDIF}};"
    yield from ["", *bodies, "", "end."]


def python():
    yield f'"""{NOTE}"""'
    yield "import os"
    yield "from ctypes import *"
    yield ""
    yield from (f"{name} = {value}" for name, value in constants())
    yield '''

class ImageSet(Structure):
    _fields_ = [("hImage", c_void_p), ("hMask", c_void_p)]


class POINT(Structure):
    _fields_ = [("x", c_int), ("y", c_int)]


class RECT(Structure):
    _fields_ = [("left", c_int), ("top", c_int), ("right", c_int), ("bottom", c_int)]


if os.name == "nt":
    _folder = os.path.dirname(os.path.abspath(__file__))
    Qv8Com, Qv8Effect = (WinDLL(os.path.join(_folder, name)) for name in ("Qv8Com.dll", "Qv8Effect.dll"))
    _platform, _prefix, _callback = windll.kernel32, "", WINFUNCTYPE
else:
    Qv8Com, Qv8Effect, _platform = (CDLL(f"lib{name}.so.0") for name in ("Qv8Com", "Qv8Effect", "Qv8Platform"))
    _prefix, _callback = "qv8_", CFUNCTYPE
ProgressCallback = _callback(c_int, c_int, c_void_p)


def _declare(library, returned, name, *parameters):
    function = getattr(library, name)
    function.restype, function.argtypes = returned, parameters
    return function


GlobalAlloc = _declare(_platform, c_void_p, _prefix + "GlobalAlloc", c_uint, c_size_t)
GlobalLock = _declare(_platform, c_void_p, _prefix + "GlobalLock", c_void_p)
GlobalUnlock = _declare(_platform, c_int, _prefix + "GlobalUnlock", c_void_p)
GlobalFree = _declare(_platform, c_void_p, _prefix + "GlobalFree", c_void_p)
GlobalSize = _declare(_platform, c_size_t, _prefix + "GlobalSize", c_void_p)
'''
    for library, returned, name, parameters in functions():
        listed = "".join(f", {TYPES[kind][PYTHON]}" for kind, _ in parameters)
        yield wrap(f'{name} = _declare({library}, {TYPES[returned][PYTHON]}, "{name}"{listed})', "    ")


def main():
    folder = Path(sys.argv[1])
    folder.mkdir(parents=True, exist_ok=True)
    files = {"Qv8Effect.cs": csharp, "Qv8Effect.bas": basic, "Qv8Effect.pas": delphi, "qv8effect_declarations.py": python}
    for name, lines in files.items():
        text = "\n".join(lines()).replace("{version}", version()) + "\n"
        ends = "\r\n" if name.endswith(".bas") else "\n"  # the one tool that minds
        (folder / name).write_bytes(text.replace("\n", ends).encode())


if __name__ == "__main__":
    main()
