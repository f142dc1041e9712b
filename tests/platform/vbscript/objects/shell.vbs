' Commands, environment, folders, registry.
Dim sh, ex, env, fso
Set sh = CreateObject("WScript.Shell")
Set fso = CreateObject("Scripting.FileSystemObject")
WScript.Echo sh.Run("sh -c ""exit 3""", 0, True) & " " & sh.Run("true") ' expect: 3 0
WScript.Echo sh.Run("cmd /c exit 4", 0, True) & " " & sh.Run("%COMSPEC% /c ""exit 5""", 0, True) ' expect: 4 5

Set ex = sh.Exec("sh -c ""echo out; echo err >&2; exit 7""")
WScript.Echo Replace(ex.StdOut.ReadAll, vbLf, "/") & "|" & ex.StdErr.ReadLine & "|" & ex.StdOut.AtEndOfStream ' expect: out/|err|True
Do While ex.Status = 0
Loop
WScript.Echo ex.Status & " " & ex.ExitCode ' expect: 1 7

Set ex = sh.Exec("sort")
ex.StdIn.WriteLine "b"
ex.StdIn.WriteLine "a"
ex.StdIn.Close
WScript.Echo ex.StdOut.ReadLine & ex.StdOut.ReadLine & ex.StdOut.AtEndOfStream ' expect: abTrue

' Much on one stream does not block the other, nor the command's input its output.
Set ex = sh.Exec("sh -c ""head -c 300000 /dev/zero >&2; echo done""")
WScript.Echo ex.StdOut.ReadLine & " " & Len(ex.StdErr.ReadAll) ' expect: done 300000
Set ex = sh.Exec("cat")
ex.StdIn.Write String(500000, "x")
ex.StdIn.Close
WScript.Echo Len(ex.StdOut.ReadAll) ' expect: 500000

Set ex = sh.Exec("sleep 60")
WScript.Echo ex.Status & " " & (ex.ProcessID > 1) ' expect: 0 True
ex.Terminate
WScript.Echo ex.Status & " " & ex.ExitCode ' expect: 1 143

Set env = sh.Environment("PROCESS")
env("KAVRO_TEST_VALUE") = "set here"
WScript.Echo sh.ExpandEnvironmentStrings("<%KAVRO_TEST_VALUE%> %NO_SUCH_NAME% 100%") ' expect: <set here> %NO_SUCH_NAME% 100%
WScript.Echo sh.Exec("sh -c ""echo $KAVRO_TEST_VALUE""").StdOut.ReadLine ' expect: set here
env.Remove "KAVRO_TEST_VALUE"
WScript.Echo "[" & env("KAVRO_TEST_VALUE") & "]" & (sh.Environment("SYSTEM")("PATH") <> "") ' expect: []True

Dim before
before = sh.CurrentDirectory
sh.CurrentDirectory = "/usr"
WScript.Echo sh.CurrentDirectory & " " & fso.FolderExists("bin") & " " & sh.Exec("pwd").StdOut.ReadLine ' expect: /usr True /usr
sh.CurrentDirectory = before
WScript.Echo (sh.SpecialFolders("Desktop") <> "") & " [" & sh.SpecialFolders("Nowhere") & "]" ' expect: True []

sh.RegWrite "HKCU\Software\KavroTest\Count", 42, "REG_DWORD"
sh.RegWrite "HKEY_CURRENT_USER\Software\KavroTest\", "own"
WScript.Echo sh.RegRead("HKCU\software\kavrotest\count") + 1 & sh.RegRead("HKCU\Software\KavroTest\") ' expect: 43own
sh.RegDelete "HKCU\Software\KavroTest\"

On Error Resume Next
sh.RegRead "HKCU\Software\KavroTest\Count"
WScript.Echo Err.Number ' expect: -2147024894
Err.Clear
sh.Run "no-such-program-anywhere"
WScript.Echo Err.Number & " " & Err.Description ' expect: -2147024894 The system cannot find the file specified.
Err.Clear
sh.Exec "/etc/passwd"
WScript.Echo Err.Number & " " & Err.Description ' expect: -2147024891 Access is denied.
Err.Clear
sh.Popup "Hello"
WScript.Echo Err.Number & " " & Err.Description ' expect: 70 Permission denied
Err.Clear
sh.Environment("USER")("X") = 1
WScript.Echo Err.Number ' expect: 70
Err.Clear
sh.Environment "NONE"
WScript.Echo Err.Number ' expect: 5
Err.Clear
On Error GoTo 0

Dim net
Set net = CreateObject("WScript.Network")
WScript.Echo (net.UserName <> "") & (net.ComputerName = UCase(net.ComputerName)) & (net.UserDomain <> "") ' expect: TrueTrueTrue
