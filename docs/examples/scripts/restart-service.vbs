' Looks after a service on this machine: starts it again when it is down, and writes that into a file.
' The user who runs the program must be allowed to restart the service (a polkit rule, or sudo without password:
' then write "sudo -n systemctl restart ").
Option Explicit

Const kService = "cups"
Const kStatus = "systemctl is-active --quiet "
Const kRestart = "systemctl restart "
Const kFile = "%HOME%/kavro-restarts.log"
Const kForAppending = 8

Sub Main
  Dim shell, code
  Set shell = CreateObject("WScript.Shell")
  If shell.Run(kStatus & kService, 0, True) = 0 Then Exit Sub
  code = shell.Run(kRestart & kService, 0, True)
  Note shell, Now & " " & kService & " was down; restart " & Outcome(code)
  If code <> 0 Then Err.Raise vbObjectError + code, "restart-service", kService & " could not be restarted."
End Sub

Function Outcome(code)
  Outcome = "done"
  If code <> 0 Then Outcome = "failed with code " & code
End Function

Sub Note(shell, text)
  Dim log
  Set log = CreateObject("Scripting.FileSystemObject").OpenTextFile( _
    shell.ExpandEnvironmentStrings(kFile), kForAppending, True)
  log.WriteLine text
  log.Close
End Sub
