' Text files, copies, moves, folders and the errors that scripts handle.
Dim fso, base, f, file
Set fso = CreateObject("Scripting.FileSystemObject")
base = fso.BuildPath(fso.GetSpecialFolder(2), fso.GetTempName)
fso.CreateFolder base
WScript.Echo fso.FolderExists(base) & " " & fso.FileExists(base) ' expect: True False

Set f = fso.CreateTextFile(base & "\one.txt")
f.WriteLine "first"
f.Write "sec"
WScript.Echo f.Line & ":" & f.Column ' expect: 2:4
f.WriteLine "ond"
f.WriteBlankLines 1
f.Write "gr" & ChrW(252) & "n"
f.Close

Set f = fso.OpenTextFile(base & "/one.txt", 1)
WScript.Echo TypeName(f) & " " & f.Read(2) & " " & f.AtEndOfLine & " " & f.ReadLine ' expect: TextStream fi False rst
WScript.Echo f.Line & ":" & f.Column & " " & f.ReadLine ' expect: 2:1 second
f.SkipLine
WScript.Echo f.ReadAll = "gr" & ChrW(252) & "n" ' expect: True
WScript.Echo f.AtEndOfStream & " " & f.AtEndOfLine ' expect: True True
On Error Resume Next
f.ReadLine
WScript.Echo Err.Number & " " & Err.Description ' expect: 62 Input past end of file
Err.Clear
f.Write "x"
WScript.Echo Err.Number & " " & Err.Description ' expect: 54 Bad file mode
Err.Clear
f.Close
f.ReadLine
WScript.Echo Err.Number ' expect: 91
Err.Clear
On Error GoTo 0

Set f = fso.OpenTextFile(base & "\one.txt", 8)
f.Write "!"
f.Close
Set file = fso.GetFile(base & "\one.txt")
WScript.Echo file.Name & " " & file.Size & " " & file.Type & " " & (file.ParentFolder = base) ' expect: one.txt 23 TXT File True
WScript.Echo file.Attributes & " " & (file = file.Path) & " " & TypeName(file.DateLastModified) & " " & (Abs(Now - file.DateLastModified) < 1 / 24) ' expect: 32 True Date True

' UTF-16 with its mark
Set f = fso.CreateTextFile(base & "\uni.txt", True, True)
f.Write "a" & ChrW(&H20AC)
f.Close
WScript.Echo fso.GetFile(base & "\uni.txt").Size ' expect: 6
Set f = fso.OpenTextFile(base & "\uni.txt", 1, False, -1)
WScript.Echo AscW(Mid(f.ReadAll, 2)) ' expect: 8364
f.Close
Set f = fso.OpenTextFile(base & "\uni.txt", 1, False, -2)
WScript.Echo Len(f.ReadAll) ' expect: 2
f.Close

' Copy, move, wildcards
fso.CopyFile base & "\one.txt", base & "\two.txt"
fso.CreateFolder base & "\sub"
fso.CopyFile base & "\*.txt", base & "\sub\"
WScript.Echo fso.GetFolder(base & "\sub").Files.Count ' expect: 3
fso.MoveFile base & "\two.txt", base & "\moved.txt"
WScript.Echo fso.FileExists(base & "\two.txt") & " " & fso.FileExists(base & "\moved.txt") ' expect: False True
fso.CopyFolder base & "\sub", base & "\copy"
fso.MoveFolder base & "\copy", base & "\sub\inner"
Dim names, item
For Each item In fso.GetFolder(base & "\sub").Files
  names = names & item.Name & ","
Next
For Each item In fso.GetFolder(base & "\sub").SubFolders
  names = names & item.Name & "/" & item.Files.Count
Next
WScript.Echo names ' expect: one.txt,two.txt,uni.txt,inner/3
WScript.Echo fso.GetFolder(base & "\sub").Size ' expect: 104
file.Name = "renamed.txt"
WScript.Echo fso.FileExists(base & "\renamed.txt") & " " & file.Name ' expect: True renamed.txt
file.Attributes = 1
WScript.Echo file.Attributes And 1 ' expect: 1

On Error Resume Next
fso.DeleteFile base & "\renamed.txt"
Report ' expect: 70 Permission denied
fso.OpenTextFile base & "\absent.txt"
Report ' expect: 53 File not found
fso.OpenTextFile base & "\no\absent.txt", 2, True
Report ' expect: 76 Path not found
fso.OpenTextFile base
Report ' expect: 70 Permission denied
fso.OpenTextFile base & "\x.txt", 3
Report ' expect: 5 Invalid procedure call or argument
fso.CreateTextFile base & "\moved.txt", False
Report ' expect: 58 File already exists
fso.CopyFile base & "\moved.txt", base & "\uni.txt", False
Report ' expect: 58 File already exists
fso.MoveFile base & "\moved.txt", base & "\uni.txt"
Report ' expect: 58 File already exists
fso.CreateFolder base & "\sub"
Report ' expect: 58 File already exists
fso.CreateFolder base & "\a\b"
Report ' expect: 76 Path not found
fso.DeleteFile base & "\*.none"
Report ' expect: 53 File not found
fso.DeleteFolder base & "\none"
Report ' expect: 76 Path not found
fso.GetFile base & "\none"
Report ' expect: 53 File not found
fso.GetFolder base & "\none"
Report ' expect: 76 Path not found
fso.GetDrive "Q:"
Report ' expect: 68 Device unavailable
fso.CopyFolder base, base & "\sub\again"
Report ' expect: 70 Permission denied
fso.GetFile base & Chr(0)
Report ' expect: 52 Bad file name or number
On Error GoTo 0

fso.DeleteFile base & "\renamed.txt", True
WScript.Echo fso.FileExists(base & "\renamed.txt") ' expect: False
fso.DeleteFolder base
WScript.Echo fso.FolderExists(base) ' expect: False
WScript.Echo fso.GetDrive("C").RootFolder.IsRootFolder & " " & (fso.GetDrive("/").TotalSize > 0) & " " & fso.DriveExists("Q") ' expect: True True False

Sub Report
  WScript.Echo Err.Number & " " & Err.Description
  Err.Clear
End Sub
