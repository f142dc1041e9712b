Class K
  Public x, list
  Private Sub Class_Initialize : Set list = CreateObject("Scripting.Dictionary") : End Sub
  Public Default Property Get Item(i) : Item = "i" & i : End Property
  Public Property Get Sub1 : Set Sub1 = Me : End Property
  Public Property Get Nth(i) : Set Nth = Me : End Property
  Public Function Arr2 : Arr2 = Array(Array(1, 2), Array(3, 4)) : End Function
  Public Property Get P2(i, j) : P2 = i & "-" & j : End Property
End Class
Function F : Set F = New K : F.x = 5 : F.list.Add "a", F.x : End Function
WScript.Echo F.x, F.list("a"), F()(3), F.list.Count ' expect: 5 5 i3 1
Dim o, a(2), d, i : Set o = New K : Set a(1) = o
o.list("k") = 1 : o.list.Item("k2") = 2 : WScript.Echo o.list("k") + o.list("k2") ' expect: 3
o.Nth(1).x = 7 : WScript.Echo o.x, o.Nth(2).Nth(3).x, o.Sub1.Sub1.x ' expect: 7 7 7
a(1).list("z") = 9 : a(1).Nth(4).x = 8 : WScript.Echo a(1).list("z"), a(1).x, a(1)(2) ' expect: 9 8 i2
WScript.Echo o.Arr2()(1)(0), o.P2(1, 2), a(1).P2(3, 4), o.Sub1()(6), o.Sub1.Item(7) ' expect: 3 1-2 3-4 i6 i7
With o.Sub1 : .x = 1 : With .list : .Add "w", 2 : WScript.Echo .Item("w") : End With : WScript.Echo .x : End With ' expect: 2
' expect: 1
With a(1) : WScript.Echo .Nth(1).P2(5, 6) : End With ' expect: 5-6
Function InWith : With New K : .x = "inner" : InWith = .x : End With : End Function
With o : .x = "outer" : WScript.Echo InWith, .x : End With ' expect: inner outer
Set d = CreateObject("Scripting.Dictionary")
Set d("o") = o : d("o").x = 11 : WScript.Echo o.x, d("o").list("w"), d("o")(8) ' expect: 11 2 i8
d("a") = Array(1, 2) : i = d("a") : i(0) = 9 : WScript.Echo d("a")(0), i(0) ' expect: 1 9
d("a")(0) = 5 : WScript.Echo d("a")(0) ' expect: 1
For Each i In d : WScript.Echo i : Next ' expect: o
' expect: a
For Each i In d.Keys : d.Remove i : Next : WScript.Echo d.Count ' expect: 0
Select Case "1" : Case CLng(1) : WScript.Echo "hard text" : Case Else : WScript.Echo "no" : End Select ' expect: hard text
Select Case 1 : Case CStr(1) : WScript.Echo "hard number" : Case Else : WScript.Echo "no" : End Select ' expect: hard number
WScript.Echo -&H8000, TypeName(-&H8000), -&H80000000, TypeName(-&H80000000) ' expect: 32768 Long 2147483648 Double
Sub Swap(x, y) : Dim t : t = x : x = y : y = t : End Sub
Dim p, q : p = 1 : q = 2 : Swap p, q : WScript.Echo p, q ' expect: 2 1
Dim v(1) : v(0) = "a" : v(1) = "b" : Swap v(0), v(1) : WScript.Echo Join(v) ' expect: b a
Sub Alias(x, y) : x = x + 1 : y = y + 10 : End Sub : p = 0 : Alias p, p : WScript.Echo p ' expect: 11
Sub Outer(x) : Inner2 x : End Sub : Sub Inner2(x) : x = x & "!" : End Sub : p = "deep" : Outer p : WScript.Echo p ' expect: deep!
Sub ChangeArr(x) : x(0) = "changed" : End Sub : ChangeArr v : WScript.Echo v(0) ' expect: changed
Function RetSame(x) : RetSame = x : End Function : i = RetSame(v) : i(0) = "copy" : WScript.Echo v(0), i(0) ' expect: changed copy
Dim m(1, 2, 3) : m(1, 2, 3) = "end" : WScript.Echo UBound(m), UBound(m, 2), UBound(m, 3), m(1, 2, 3) ' expect: 1 2 3 end
i = m : i(0, 0, 0) = 1 : WScript.Echo IsEmpty(m(0, 0, 0)), i(1, 2, 3) ' expect: True end
Dim dyn() : ReDim dyn(1, 1) : dyn(1, 1) = "x" : ReDim Preserve dyn(1, 4) : WScript.Echo dyn(1, 1), UBound(dyn, 2) ' expect: x 4
ReDim dyn(3) : WScript.Echo IsEmpty(dyn(0)), UBound(dyn) ' expect: True 3
i = 4 : ReDim Preserve dyn(i + 1) : WScript.Echo UBound(dyn) ' expect: 5
i = Array(1, 2, 3) : ReDim Preserve i(4) : WScript.Echo i(2), UBound(i) ' expect: 3 4
i = Split("a b c") : ReDim Preserve i(1) : WScript.Echo Join(i, "-") ' expect: a-b
Dim e1, e2(1) : Erase e2 : e1 = Array(1) : Erase e1 : On Error Resume Next : p = UBound(e1) : WScript.Echo Err.Number, IsArray(e1) : Err.Clear ' expect: 9 True
For Each i In v : Exit For : Next : WScript.Echo i ' expect: changed
For Each i In v : ReDim v(3) : Next : WScript.Echo Err.Number : Err.Clear ' expect: 10
o.list.Add "dup", 1 : o.list.Add "dup", 2 : WScript.Echo Err.Number : Err.Clear ' expect: 457
Do While True : If o.x > 13 Then Exit Do
o.x = o.x + 1 : Loop : WScript.Echo o.x ' expect: 14
For i = 1 To 3 : For p = 1 To 3 : If p = 2 Then Exit For
WScript.Echo i & p : Next : Next ' expect: 11
' expect: 21
' expect: 31
Do : Do : Exit Do : Loop : WScript.Echo "after inner" : Exit Do : Loop ' expect: after inner
For i = 1 To 2 : Do : Exit For : Loop : Next : WScript.Echo i ' expect: 1
While i < 5 : i = i + 1 : For p = 1 To 9 : Exit For : Next : Wend : WScript.Echo i, p ' expect: 5 1
Function Nested(n) : Dim r, j : For j = 1 To n : r = r & Nested(j - 1) & j : Next : Nested = r : End Function : WScript.Echo Nested(3) ' expect: 1121123
Function Ack(m, n) : If m = 0 Then : Ack = n + 1 : ElseIf n = 0 Then : Ack = Ack(m - 1, 1) : Else : Ack = Ack(m - 1, Ack(m, n - 1)) : End If : End Function
WScript.Echo Ack(2, 3) ' expect: 9
