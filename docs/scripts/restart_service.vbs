' Restarts a service of this machine when it is not running any more.
' The account that runs the program needs the right to do so (see systemctl and polkit).
Option Explicit
Const kService = "nginx.service"

Sub Main
  Dim shell
  Set shell = CreateObject("WScript.Shell")
  If shell.Run("systemctl is-active --quiet " & kService, 0, True) = 0 Then Exit Sub
  If shell.Run("systemctl restart " & kService, 0, True) <> 0 Then
    Err.Raise vbObjectError + 3, "restart_service", kService & " cannot be restarted"
  End If
End Sub
