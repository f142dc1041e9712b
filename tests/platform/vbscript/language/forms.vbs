' statement forms
Dim i, s, n, a, d, o, x, y
If 1 Then WScript.Echo "a" Else WScript.Echo "b" : WScript.Echo "c"
' expect: a
If 0 Then WScript.Echo "a" Else WScript.Echo "b" : WScript.Echo "c"
' expect: b
' expect: c
If 0 Then WScript.Echo "a" : WScript.Echo "b"
WScript.Echo "next" ' expect: next
If 1 Then If 0 Then WScript.Echo "x" Else WScript.Echo "inner else"
' expect: inner else
If 1 Then
Else
End If
If 0 Then
ElseIf 1 Then
  WScript.Echo "ei" ' expect: ei
End If
If 1 Then : WScript.Echo "blk" : End If
' expect: blk
If 1 Then ' comment
  WScript.Echo "cmt" ' expect: cmt
End If
If 1 Then Rem comment
End If
WScript.Echo "rem" ' expect: rem
If (1) Then WScript.Echo "paren" ' expect: paren
If Not 0 Then WScript.Echo "not" ' expect: not
If "True" Then WScript.Echo "str" ' expect: str
If "1" Then WScript.Echo "str1" ' expect: str1
For i = 1 To 3: s = s & i: Next: WScript.Echo s ' expect: 123
s = ""
For i = 3 To 1 Step -1 : s = s & i : Next : WScript.Echo s, i ' expect: 321 0
s = ""
For i = 0.1 To 0.5 Step 0.1 : s = s & i & ";" : Next : WScript.Echo s ' expect: 0.1;0.2;0.3;0.4;0.5;
s = "" : n = 0
For i = 1 To 10 : i = i + 2 : s = s & i & " " : Next : WScript.Echo s, i ' expect: 3 6 9 12  13
For i = 32766 To 32768 : Next : WScript.Echo i, TypeName(i) ' expect: 32769 Long
For i = 2147483646 To 2147483647 : Next : WScript.Echo i, TypeName(i) ' expect: 2147483648 Double
For i = "1" To "3" : Next : WScript.Echo i, TypeName(i) ' expect: 4 Double
For i = CByte(254) To CByte(255) : n = n + 1 : If n > 5 Then Exit For
Next : WScript.Echo n, i, TypeName(i) ' expect: 2 256 Integer
For i = #1/1/2000# To #1/3/2000# : s = s & i & ";" : Next : WScript.Echo i, TypeName(i) ' expect: 1/4/2000 Date
n = 0 : For i = 1 To 5 Step 0 : n = n + 1 : If n = 4 Then Exit For
Next : WScript.Echo n, i ' expect: 4 1
For i = 5 To 1 : WScript.Echo "never" : Next : WScript.Echo i ' expect: 5
n = 3 : For i = 1 To n : n = 1 : Next : WScript.Echo i ' expect: 4
x = 1 : For i = x To x + 1 : x = 100 : Next : WScript.Echo i ' expect: 3
For i = True To 1 : n = n & i & "," : Next : WScript.Echo n ' expect: 1-1,0,1,
s = "" : For Each x In Array(1, 2, 3) : x = x * 2 : s = s & x : Next : WScript.Echo s ' expect: 246
WScript.Echo TypeName(x) ' expect: Integer
Dim m(1, 2)
For i = 0 To 1 : For n = 0 To 2 : m(i, n) = i & n : Next : Next
s = "" : For Each x In m : s = s & x & " " : Next : WScript.Echo s ' expect: 00 10 01 11 02 12
s = "" : a = Array(1, 2, 3) : For Each x In a : If x = 2 Then a = Array(9) 
s = s & x : Next : WScript.Echo s ' expect: 123
For Each x In Array() : WScript.Echo "never" : Next
Set d = CreateObject("Scripting.Dictionary") : d.Add "k1", 1 : d.Add "k2", 2
s = "" : For Each x In d : s = s & x : Next : WScript.Echo s ' expect: k1k2
s = "" : For Each x In d.Items : s = s & x : Next : WScript.Echo s ' expect: 12
n = 0 : Do : n = n + 1 : If n = 3 Then Exit Do
Loop : WScript.Echo n ' expect: 3
n = 0 : Do While n < 3 : n = n + 1 : Loop : WScript.Echo n ' expect: 3
n = 5 : Do Until n < 3 : n = n - 1 : Loop : WScript.Echo n ' expect: 2
n = 0 : Do : n = n + 1 : Loop Until True : WScript.Echo n ' expect: 1
n = 0 : Do : n = n + 1 : Loop While False : WScript.Echo n ' expect: 1
n = 0 : While n < 3 : n = n + 1 : Wend : WScript.Echo n ' expect: 3
n = 0 : Do While Null : n = 1 : Loop : WScript.Echo n ' expect: 0
n = 0 : Do Until Null : n = n + 1 : If n > 2 Then Exit Do
Loop : WScript.Echo n ' expect: 3
Select Case 2 : Case 1, 3 : WScript.Echo "13" : Case 2 : WScript.Echo "2" : End Select ' expect: 2
Select Case "a" : Case "b" : End Select
Select Case 5 : End Select
Select Case 5 : Case Else : WScript.Echo "else" : End Select ' expect: else
Select Case Null : Case Null : WScript.Echo "no" : Case Else : WScript.Echo "nullelse" : End Select ' expect: nullelse
Select Case True
Case 1 > 2, 2 > 1
  WScript.Echo "t" ' expect: t
End Select
Select Case 3
  Case 1
  Case 3 WScript.Echo "same line without colon" ' expect: same line without colon
End Select
Dim cnt : cnt = 0
Function Counted(v) : cnt = cnt + 1 : Counted = v : End Function
Select Case Counted(3) : Case 1 : Case 2 : Case 3 : End Select : WScript.Echo cnt ' expect: 1
cnt = 0 : Select Case 2 : Case Counted(1), Counted(2), Counted(3) : End Select : WScript.Echo cnt ' expect: 2
Class P
  Public X
  Public Y
  Public Function Me2 : Set Me2 = Me : End Function
  Public Sub Add(v) : X = X + v : End Sub
End Class
Set o = New P
With o
  .X = 1
  .Y = .X + 1
  With .Me2
    .X = 10
  End With
  .Add 5
  WScript.Echo .X, .Y ' expect: 15 2
End With
With o : .X = 1 : End With : WScript.Echo o.X ' expect: 1
For i = 1 To 2 : With o : .X = i : Exit For : End With : Next : WScript.Echo o.X ' expect: 1
Sub WithExit : With o : .X = 77 : Exit Sub : End With : End Sub : WithExit : WScript.Echo o.X ' expect: 77
With New P : .X = 3 : WScript.Echo .X : End With ' expect: 3
Dim q1 : q1 = 5 : Dim q2 : WScript.Echo q1, IsEmpty(q2) ' expect: 5 True
WScript.Echo IsEmpty(late), 1 : Dim late ' expect: True 1
: : WScript.Echo "colons" : : ' expect: colons
x = 1 : y = 2 : If x = 1 Then If y = 2 Then WScript.Echo "both" ' expect: both
If x = 2 Then WScript.Echo "no" Else If y = 3 Then WScript.Echo "no" Else WScript.Echo "last" ' expect: last
s = "a" & _
 "b" _
 & "c"
WScript.Echo s ' expect: abc
WScript.Echo _
  "cont", _
  1 ' expect: cont 1
Call WScript.Echo("call") ' expect: call
Call WScript.Echo("call", 2) ' expect: call 2
WScript.Echo ("one") ' expect: one
WScript.Echo ("a"), ("b") ' expect: a b
WScript.Echo ("a") & "b" ' expect: ab
WScript.Echo (1 + 2) * 3 ' expect: 9
WScript.Echo("x") ' expect: x
REM whole line
Rem
<!-- html comment
Dim [a b], [Dim] : [a b] = 1 : [dim] = 2 : WScript.Echo [A B] + [DIM] ' expect: 3
Dim [foo] : foo = 3 : WScript.Echo [FOO] ' expect: 3
Dim default, property, explicit, error, step : default = 1 : property = 2 : explicit = 3 : error = 4 : step = 5
WScript.Echo default + property + explicit + error + step ' expect: 15
For step = 1 To 3 Step 2 : Next : WScript.Echo step ' expect: 5
Dim ünï : ünï = 4 : WScript.Echo ÜNÏ ' expect: 4
Const A1 = 1, B1 = "x", C1 = #1/1/2000#, D1 = True, E1 = -1.5, F1 = (3), G1 = Null, H1 = &HFF, I1 = Empty
WScript.Echo A1, B1, C1, D1, E1, F1, IsNull(G1), H1, IsEmpty(I1) ' expect: 1 x 1/1/2000 True -1.5 3 True 255 True
Public pub1, pub2(3) : pub2(3) = 1 : Private priv1 : WScript.Echo UBound(pub2) ' expect: 3
Public Const PC = 5 : Private Const PC2 = 6 : WScript.Echo PC + PC2 ' expect: 11
Stop
WScript.Echo "after stop" ' expect: after stop
Randomize : Randomize 5 : Randomize(5)
x = Array(1, 2)(1) : WScript.Echo x ' expect: 2
a = Array(Array(1, 2), Array(3, 4)) : WScript.Echo a(1)(0) ' expect: 3
a(1)(0) = 9 : WScript.Echo a(1)(0) ' expect: 9
b = a : b(1)(0) = 10 : WScript.Echo a(1)(0), b(1)(0) ' expect: 9 10
