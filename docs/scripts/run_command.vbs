' Runs a command after every check cycle and keeps what it printed when it failed.
Option Explicit
Const kCommand = "df -h /"

Sub Main
  Dim shell, process, text
  Set shell = CreateObject("WScript.Shell")
  Set process = shell.Exec(kCommand)
  text = process.StdOut.ReadAll
  If process.ExitCode <> 0 Then Err.Raise vbObjectError + 1, "run_command", "exit code " & process.ExitCode & ": " & text
End Sub
