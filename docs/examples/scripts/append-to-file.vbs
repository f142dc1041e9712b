' Appends one line with the time to a file after every check cycle.
Option Explicit

Const kFile = "%HOME%/kavro-cycles.log"
Const kForAppending = 8

Sub Main
  Dim shell, files, log
  Set shell = CreateObject("WScript.Shell")
  Set files = CreateObject("Scripting.FileSystemObject")
  Set log = files.OpenTextFile(shell.ExpandEnvironmentStrings(kFile), kForAppending, True)
  log.WriteLine Now & " check finished"
  log.Close
End Sub
