// Makes a picture lighter, in C#:
//
//   Lighter IN.bmp OUT.bmp            tells how far it is
//   Lighter IN.bmp OUT.bmp PERCENT    cancels the work when it is that far, and writes nothing
//
// Windows:      csc /platform:x86 Lighter.cs Qv8Effect.cs   (x64 with the 64-bit libraries)
// Linux, Mono:  mcs Lighter.cs Qv8Effect.cs                 (Lighter.exe.config leads to the shared objects)
//
// Qv8Effect.cs holds the declarations. Built with Mono and run with it on Linux; not yet run on Windows.
using System;
using System.IO;
using System.Runtime.InteropServices;

static class Lighter
{
    const int FileHeader = 14, PictureHeader = 40;

    [DllImport("kernel32")] static extern IntPtr GlobalAlloc(uint flags, UIntPtr bytes);
    [DllImport("kernel32")] static extern IntPtr GlobalLock(IntPtr block);
    [DllImport("kernel32")] static extern int GlobalUnlock(IntPtr block);
    [DllImport("kernel32")] static extern IntPtr GlobalFree(IntPtr block);
    [DllImport("kernel32")] static extern UIntPtr GlobalSize(IntPtr block);

    // What follows the 14 bytes of a BMP file's own header is a picture, as the library wants it.
    static IntPtr ReadPicture(string name)
    {
        byte[] file = File.ReadAllBytes(name);
        if (file.Length < FileHeader + PictureHeader || file[0] != 'B' || file[1] != 'M' ||
            BitConverter.ToInt32(file, FileHeader) != PictureHeader)
            throw new InvalidDataException(name + " is not a BMP file of the usual kind");
        IntPtr picture = GlobalAlloc(2 /* movable */, (UIntPtr)(file.Length - FileHeader));
        if (picture == IntPtr.Zero)
            throw new OutOfMemoryException();
        IntPtr bytes = GlobalLock(picture);
        Marshal.Copy(file, FileHeader, bytes, file.Length - FileHeader);
        int begin = FileHeader + PictureHeader + Qv8.GetDibPalSize(bytes);
        GlobalUnlock(picture);
        if (begin == BitConverter.ToInt32(file, 10))
            return picture;
        GlobalFree(picture);
        throw new InvalidDataException(name + " has a gap before its pixels");
    }

    static void WritePicture(string name, IntPtr picture)
    {
        int size = (int)GlobalSize(picture);
        byte[] file = new byte[FileHeader + size];
        IntPtr bytes = GlobalLock(picture);
        Marshal.Copy(bytes, file, FileHeader, size);
        int begin = FileHeader + PictureHeader + Qv8.GetDibPalSize(bytes);
        GlobalUnlock(picture);
        file[0] = (byte)'B';
        file[1] = (byte)'M';
        BitConverter.GetBytes(file.Length).CopyTo(file, 2);
        BitConverter.GetBytes(begin).CopyTo(file, 10);
        File.WriteAllBytes(name, file);
    }

    static int Main(string[] words)
    {
        if (words.Length < 2)
        {
            Console.Error.WriteLine("usage: Lighter IN.bmp OUT.bmp [PERCENT]");
            return 2;
        }
        int cancelAt = words.Length > 2 ? int.Parse(words[2]) : 101;
        int told = -1;
        Qv8.ProgressCallback onProgress = (percent, context) =>
        {
            if (percent / 25 != told)
            {
                told = percent / 25;
                Console.WriteLine(percent + " %");
            }
            return percent < cancelAt ? 1 : 0; // 0 cancels
        };
        Qv8.ImageSet target = new Qv8.ImageSet { hImage = ReadPicture(words[0]) };
        uint owner = Qv8.AddProgressOwner(onProgress, IntPtr.Zero);
        IntPtr lighter = Qv8.QV8RGBGamma(ref target, Qv8.QV8_AREA_WHOLE, null, 0, null, 1, -0.5, -0.5, -0.5, owner,
                                         UIntPtr.Zero, UIntPtr.Zero, UIntPtr.Zero);
        int status = Qv8.GetErrorStatus();
        Qv8.RemoveProgressOwner(owner);
        GC.KeepAlive(onProgress); // the library held it, of which the collector does not know
        Console.WriteLine(Marshal.PtrToStringAnsi(Qv8.GetErrorStatusText(status)));
        if (lighter != IntPtr.Zero)
        {
            WritePicture(words[1], lighter);
            GlobalFree(lighter);
        }
        GlobalFree(target.hImage);
        return lighter != IntPtr.Zero ? 0 : 1;
    }
}
