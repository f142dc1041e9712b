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
C "End If" ' expect: 1024
C "End Sub" ' expect: 1024
C "Else" ' expect: 1024
C "Wend" ' expect: 1024
C "Case 1" ' expect: 1024
C "End" ' expect: 1024
C "= 5" ' expect: 1024
C ")" ' expect: 1024
C "5" ' expect: 1024
C "Dim x As Integer" ' expect: 1025
C "x = 5 As" ' expect: 1025
C "Next i" ' expect: 1055
C "For i = 1 To 2/Next i" ' expect: 1025
C "If 1 Then/x = 1 : End If" ' expect: 1042
C "If 1 Then/End Sub" ' expect: 1012
C "Property Get X : End Property" ' expect: 1048
C "Public Property Let X(v) : End Property" ' expect: 1048
C "Class K : Public Default X : End Class" ' expect: 1056
C "Class K : Default Sub X : End Sub : End Class" ' expect: 1057
C "Sub a : Sub b : End Sub : End Sub" ' expect: 1024
C "If 1 Then Sub b : End Sub" ' expect: 1024
C "For i = 1 To 2 : Class K : End Class : Next" ' expect: 1024
C "x = 1/Option Explicit" ' expect: 1024
C "Dim a(-1)" ' expect: 1026
C "Dim a(1.5)" ' expect: 1026
C "Const c" ' expect: 1011
C "Const c = x" ' expect: 1045
C "Const c = -x" ' expect: 1045
C "Const c = ""a"" & ""b""" ' expect: 1045
C "Const c = New X" ' expect: 1045
C "Set x" ' expect: 1011
C "Set x = " ' expect: 1023
C "Call" ' expect: 1010
C "Call 5" ' expect: 1010
C "x. = 5" ' expect: 1010
C "a!b = 1" ' expect: 1032
C "x := 5" ' expect: 1024
C "x = y z" ' expect: 1025
C "foo (1, 2)" ' expect: 1044
C "foo 1, 2)" ' expect: 1025
C "Call foo 1" ' expect: 1025
C "Do While 1 : Loop While 1" ' expect: 1025
C "Exit" ' expect: 1039
C "Exit For" ' expect: 1039
C "Exit Function" ' expect: 1039
C "Sub s : Exit Function : End Sub" ' expect: 1039
C "Function f : Exit Sub : End Function" ' expect: 1039
C "While 1 : Exit While : Wend" ' expect: 1039
C "For a(1) = 1 To 2 : Next" ' expect: 1040
C "For x.y = 1 To 2 : Next" ' expect: 1040
C "For Each x(1) In y : Next" ' expect: 1040
C "Sub s(x) : Dim x : End Sub" ' expect: 1041
C "Dim zz1 : Const zz1 = 1" ' expect: 1041
C "Class Q1 : End Class : Class Q1 : End Class" ' expect: 1041
C "Class Q2 : Public a, a : End Class" ' expect: 1041
C "Class Q3 : Public a : Sub a : End Sub : End Class" ' expect: 1041
C "Select Case 1/Case Is > 5/End Select" ' expect: 1023
C "Select Case 1/x = 1/Case 1/End Select" ' expect: 1014
C "Function f(Optional x)/End Function" ' expect: 1010
C "Function f(ParamArray x)/End Function" ' expect: 1010
C "Function f(x As Integer)/End Function" ' expect: 1006
C "Function 5/End Function" ' expect: 1010
C "Sub/End Sub" ' expect: 1010
C "Sub s(" ' expect: 1010
C "Sub s(a" ' expect: 1006
C "Class" ' expect: 1010
C "Class 5" ' expect: 1010
C "Class K : x = 1 : End Class" ' expect: 1002
C "Class K : Const x = 1 : End Class" ' expect: 1002
C "Class K" ' expect: 1014
C "With" ' expect: 1023
C "With x" ' expect: 1014
C "On Error" ' expect: 1002
C "On Error Resume" ' expect: 1020
C "On Error GoTo 1" ' expect: 1002
C "Static x" ' expect: 1024
C "GoTo x" ' expect: 1024
C "Debug.Print 1" ' expect: 1024
C "Me.x = 1" ' expect: 1037
C "Me = 1" ' expect: 1037
C "Class K2 : Sub s : Me = 1 : End Sub : End Class" ' expect: 1037
C "x = 1 :: y = 2" ' expect: 0
C "x = _/ 1" ' expect: 0
C "x = ""a _/b""" ' expect: 1033
C "Erase" ' expect: 450
C "ReDim x" ' expect: 1005
C "ReDim x()" ' expect: 1023
C "ReDim Preserve x(1)" ' expect: 0
C "Randomize 1, 2" ' expect: 450
C "x = (1 + 2" ' expect: 1006
C "x = foo(1" ' expect: 1006
C "If 1 x = 1" ' expect: 1017
C "If Then" ' expect: 1023
C "ElseIf 1 Then" ' expect: 1024
C "If 1 Then/Else/Else/End If" ' expect: 1014
C "If 1 Then/Else/ElseIf 1 Then/End If" ' expect: 1014
C "For Each x y" ' expect: 1046
C "For = 1 To 2" ' expect: 1010
C "For i" ' expect: 1011
C "For i = 1" ' expect: 1013
C "For i = 1 To" ' expect: 1023
C "For i = 1 To 2 Step" ' expect: 1023
C "Do Until" ' expect: 1023
C "Loop Until 1" ' expect: 1038
C "x = Not" ' expect: 1023
C "x = 1 Is" ' expect: 1023
C "x = New" ' expect: 1010
C "x = New 5" ' expect: 1010
C "Function f : End Sub" ' expect: 1015
C "Class K : Property Get X : End Function : End Class" ' expect: 1050
C "Class K : Property X : End Property : End Class" ' expect: 1049
C "Class K : Property Let X() : End Property : End Class" ' expect: 1054
C "Class K : Property Set X : End Property : End Class" ' expect: 1054
C "Class K : Sub Class_Terminate(x) : End Sub : End Class" ' expect: 1053
C "Class K : Property Get X(a) : End Property : Property Set X(a, b, c) : End Property : End Class" ' expect: 1051
C "Class K : Public Default Sub A : End Sub : Public Default Property Get B : End Property : End Class" ' expect: 1052
C "Class K : Public Default Property Set X(v) : End Property : End Class" ' expect: 1058
C "#If x" ' expect: 1002
C "x = #notadate#" ' expect: 1002
C "x = 5 ^" ' expect: 1023
C "x = 1,2" ' expect: 1025
C "x = a , b" ' expect: 1025
C "Dim" ' expect: 1010
C "Dim a," ' expect: 1010
C "Dim If" ' expect: 1010
C "If = 5" ' expect: 1023
C "x = y .z" ' expect: 1025
C "x=`1" ' expect: 1032
C "x = @" ' expect: 1032
C "x = 5%" ' expect: 1032
C "x = y$" ' expect: 1032
C "_x = 5" ' expect: 1032
C "x_ = 5" ' expect: 0
C "Public" ' expect: 1010
C "Private Sub" ' expect: 1010
C "Public x = 5" ' expect: 1025
C "Const a = 1, b" ' expect: 1011
