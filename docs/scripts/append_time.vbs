' Appends the time of every finished check cycle to a text file.
Option Explicit
Const kFile = "/tmp/kavro-cycles.txt"
Const kAppend = 8

Sub Main
  Dim files, stream
  Set files = CreateObject("Scripting.FileSystemObject")
  Set stream = files.OpenTextFile(kFile, kAppend, True)
  stream.WriteLine Now & "  check cycle finished"
  stream.Close
End Sub
