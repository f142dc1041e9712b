' Path functions work on the text, with slashes and with backslashes.
Dim fso
Set fso = CreateObject("Scripting.FileSystemObject")
WScript.Echo fso.BuildPath("C:\dir", "file.txt") ' expect: C:\dir\file.txt
WScript.Echo fso.BuildPath("C:\dir\", "file.txt") ' expect: C:\dir\file.txt
WScript.Echo fso.BuildPath("/dir", "file.txt") & " " & fso.BuildPath("", "x") ' expect: /dir/file.txt x
WScript.Echo fso.GetFileName("C:\a\b.c.txt") & " " & fso.GetFileName("/a/b/") ' expect: b.c.txt b
WScript.Echo fso.GetBaseName("C:\a\b.c.txt") & " " & fso.GetExtensionName("C:\a\b.c.txt") ' expect: b.c txt
WScript.Echo "[" & fso.GetExtensionName("/a.d/noext") & "]" ' expect: []
WScript.Echo fso.GetParentFolderName("C:\a\b.txt") & " " & fso.GetParentFolderName("C:\a") ' expect: C:\a C:\
WScript.Echo fso.GetParentFolderName("/a/b") & " " & fso.GetParentFolderName("/a") & " [" & fso.GetParentFolderName("/") & "]" ' expect: /a / []
WScript.Echo "[" & fso.GetParentFolderName("name") & "]" & fso.GetParentFolderName("a\b\c\") ' expect: []a\b
WScript.Echo fso.GetDriveName("C:\x") & " " & fso.GetDriveName("\\srv\share\x") & " [" & fso.GetDriveName("x") & "]" ' expect: C: \\srv\share []
WScript.Echo fso.GetAbsolutePathName("/a/./b/../c") & " " & fso.GetAbsolutePathName("C:\a\..\b") ' expect: /a/c C:\b
WScript.Echo Len(fso.GetTempName) & " " & Left(fso.GetTempName, 3) & " " & Right(fso.GetTempName, 4) ' expect: 12 rad .tmp
