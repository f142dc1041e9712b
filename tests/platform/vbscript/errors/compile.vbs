Sub C(text)
  On Error Resume Next
  ExecuteGlobal Replace(text, "/", vbLf)
  WScript.Echo Err.Number
End Sub
C "x = (1"                  ' expect: 1006
C "x = "                    ' expect: 1023
C "x = 1 2"                 ' expect: 1025
C "Dim a(n)"                ' expect: 1026
C "Dim 5"                   ' expect: 1010
C "Const x 5"               ' expect: 1011
C "Const x = 1 + 1"         ' expect: 1045
C "For i = 1 5/Next"        ' expect: 1013
C "If x"                    ' expect: 1017
C "If x Then/x = 1"         ' expect: 1014
C "Sub s/x = 1"             ' expect: 1014
C "Sub s/End Function"      ' expect: 1016
C "Function s/End Sub"      ' expect: 1015
C "While x"                 ' expect: 1018
C "Do"                      ' expect: 1019
C "For i = 1 To 2"          ' expect: 1020
C "Select x"                ' expect: 1021
C "Select Case x/End If"    ' expect: 1022
C "Do x"                    ' expect: 1028
C "With x/End If"           ' expect: 1029
C "x = " & String(300, "a") ' expect: 1030
C "x = &HG + 1e"            ' expect: 1031
C "x = ?"                   ' expect: 1032
C "x = ""abc"               ' expect: 1033
C "x = Me"                  ' expect: 1037
C "Loop"                    ' expect: 1038
C "Exit Do"                 ' expect: 1039
C "Exit Sub"                ' expect: 1039
C "For i = 1 To 2/For i = 1 To 2/Next/Next" ' expect: 1040
C "Dim q, q"                ' expect: 1041
C "Sub s(a, a)/End Sub"     ' expect: 1041
C "foo(1, 2)"               ' expect: 1044
C "For Each x Of y/Next"    ' expect: 1046
C "Class K/End Sub"         ' expect: 1047
C "Class K/Property Nix X/End Property/End Class" ' expect: 1049
C "Class K/Property Get X/End Sub/End Class" ' expect: 1050
C "Class K/Property Get X(a)/End Property/Property Let X(v)/End Property/End Class" ' expect: 1051
C "Class K/Public Default Function A/End Function/Public Default Function B/End Function/End Class" ' expect: 1052
C "Class K/Sub Class_Initialize(a)/End Sub/End Class" ' expect: 1053
C "Class K/Property Let X/End Property/End Class" ' expect: 1054
C "Next"                    ' expect: 1055
C "Class K/Private Default Function A/End Function/End Class" ' expect: 1057
C "Class K/Public Default Property Let X(v)/End Property/End Class" ' expect: 1058
C "Option Nix"              ' expect: 1002
C "Let x = 1"               ' expect: 1024
C "On Error GoTo label"     ' expect: 1002
C "x = [abc"                ' expect: 1007
C "Set 5 = x"               ' expect: 1010
C "For Each x In y/x = 1"   ' expect: 1020
C "ReDim a"                 ' expect: 1005
C "x = " & String(5000, "(") & "1" & String(5000, ")") ' expect: 1001
