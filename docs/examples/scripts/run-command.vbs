' Runs a command after every check cycle. When it fails, so does the script, and the program logs the error.
Option Explicit

Const kCommand = "logger -t kavro2000 ""Check finished"""
Const kHidden = 0

Sub Main
  Dim shell, code
  Set shell = CreateObject("WScript.Shell")
  code = shell.Run(kCommand, kHidden, True)
  If code <> 0 Then Err.Raise vbObjectError + code, "run-command", "The command ended with code " & code & "."
End Sub
