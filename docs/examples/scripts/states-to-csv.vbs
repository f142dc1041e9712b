' Writes the state of every check into a CSV file, which other programs can read at any time.
' Reads the database through the command line tool sqlite3 (package sqlite3).
Option Explicit

Const kDatabase = "%HOME%/.local/share/kavro2000/defaultDB.mdb"
Const kFile = "%HOME%/kavro-states.csv"
Const kQuery = "SELECT Device_Name, Device_Alias, Port_Num, Port_Status, Port_Last_Error, Port_Success, Port_Failure FROM tblDevices JOIN tblPortMain USING (Device_ID) JOIN tblPortStatus USING (Port_ID) ORDER BY Device_Name, Port_Num"

Sub Main
  Dim shell, files, query, csv, target, fields
  Set shell = CreateObject("WScript.Shell")
  Set files = CreateObject("Scripting.FileSystemObject")
  target = shell.ExpandEnvironmentStrings(kFile)
  Set query = shell.Exec("sqlite3 -readonly -ascii """ & kDatabase & """ """ & kQuery & """")
  query.StdIn.Close

  ' Written beside the target and renamed, so that no reader ever sees half a file.
  Set csv = files.CreateTextFile(target & ".new", True)
  csv.WriteLine "Device,Alias,Check,State,Last error,Successes,Failures"
  For Each fields In Rows(query.StdOut)
    csv.WriteLine CsvLine(Split(fields, Chr(31)))
  Next
  csv.Close
  If Not query.StdErr.AtEndOfStream Then
    files.DeleteFile target & ".new"
    Err.Raise vbObjectError + 1, "states-to-csv", query.StdErr.ReadLine
  End If
  If files.FileExists(target) Then files.DeleteFile target, True
  files.MoveFile target & ".new", target
End Sub

' The tool separates rows by the character 30 and fields by 31, which no name contains.
Function Rows(output)
  Rows = Array()
  If Not output.AtEndOfStream Then Rows = Filter(Split(output.ReadAll, Chr(30)), Chr(31))
End Function

Function CsvLine(fields)
  Dim i
  For i = 0 To UBound(fields)
    If InStr(fields(i), ",") + InStr(fields(i), """") > 0 Then
      fields(i) = """" & Replace(fields(i), """", """""") & """"
    End If
  Next
  CsvLine = Join(fields, ",")
End Function
