' every Err aspect
On Error Resume Next
Dim x, i, s
Err.Raise 5 : WScript.Echo Err.Number, Err.Description, Err.Source ' expect: 5 Invalid procedure call or argument Microsoft VBScript runtime error
Err.Clear : WScript.Echo Err.Number, "[" & Err.Description & "]", "[" & Err.Source & "]", Err.HelpContext, "[" & Err.HelpFile & "]" ' expect: 0 [] [] 0 []
Err.Raise 7, "src" : WScript.Echo Err.Number, Err.Source, Err.Description ' expect: 7 src Out of memory
Err.Clear : Err.Raise 1, "s", "d", "h.hlp", 42 : WScript.Echo Err.Number, Err.Source, Err.Description, Err.HelpFile, Err.HelpContext ' expect: 1 s d h.hlp 42
Err.Clear : Err.Raise vbObjectError + 1, , "only text" : WScript.Echo Err.Number, Err.Description ' expect: -2147221503 only text
Err.Clear : Err.Raise vbObjectError : WScript.Echo Err.Number ' expect: -2147221504
Err.Clear : Err.Raise 65535 : WScript.Echo Err.Number ' expect: 65535
Err.Clear : Err.Raise 65536 : WScript.Echo Err.Number ' expect: 65536
Err.Clear : Err.Raise "13" : WScript.Echo Err.Number, Err.Description ' expect: 13 Type mismatch
Err.Clear : Err.Raise "abc" : WScript.Echo Err.Number ' expect: 13
Err.Clear : Err.Raise -2146828275 : WScript.Echo Err.Number, Err.Description ' expect: 13 Type mismatch
Err.Clear : Err.Raise &H800A000B : WScript.Echo Err.Number ' expect: 11
Err.Clear : Err.Raise : WScript.Echo Err.Number ' expect: 450
Err.Clear : Err.Number = 9 : WScript.Echo Err.Number, Err ' expect: 9 9
Err.Description = "mine" : Err.Source = "me" : WScript.Echo Err.Description, Err.Source ' expect: mine me
Err.Clear : Err.Description = "kept" : Err.Source = "ksrc" : Err.Raise 1000 : WScript.Echo Err.Number, Err.Description, Err.Source ' expect: 1000 kept ksrc
Err.Clear
x = 1 / 0 : s = Err.Number : i = 5 : WScript.Echo s, Err.Number ' expect: 11 11
x = "kept" : x = 1 / 0 : WScript.Echo x ' expect: kept
On Error GoTo 0 : WScript.Echo Err.Number ' expect: 0
On Error Resume Next
If 1 / 0 = 1 Then WScript.Echo "then" Else WScript.Echo "else"
' expect: then
Err.Clear
Sub Raises : Err.Raise 100, "sub", "in sub" : WScript.Echo "never" : End Sub
Raises : WScript.Echo Err.Number, Err.Source, Err.Description ' expect: 100 sub in sub
Err.Clear
Sub Own : On Error Resume Next : Raises : WScript.Echo "own", Err.Number : End Sub
Own : WScript.Echo Err.Number ' expect: own 100
' expect: 100
Err.Clear
Sub OwnZero : On Error Resume Next : Raises : On Error GoTo 0 : Raises : WScript.Echo "never" : End Sub
OwnZero : WScript.Echo Err.Number ' expect: 100
Err.Clear
Sub OwnExit : On Error Resume Next : x = 1 / 0 : Exit Sub : End Sub
OwnExit : WScript.Echo Err.Number ' expect: 0
Function Fails : Fails = 3 : x = 1 / 0 : Fails = 4 : End Function
x = "old" : x = Fails : WScript.Echo x, Err.Number ' expect: old 11
Err.Clear
x = Fails + 1 : WScript.Echo x, Err.Number : Err.Clear ' expect: old 11
Class Thrower
  Public Property Get P : Err.Raise 200 : End Property
  Public Property Let P(v) : Err.Raise 201 : End Property
  Public Sub M : Err.Raise 202 : End Sub
  Public Default Function D : Err.Raise 203 : End Function
End Class
Class BadInit : Private Sub Class_Initialize : Err.Raise 204 : End Sub : End Class
Class BadTerm : Private Sub Class_Terminate : WScript.Echo "term" : Err.Raise 205 : End Sub : End Class
Dim t : Set t = New Thrower
x = t.P : WScript.Echo Err.Number : Err.Clear ' expect: 200
t.P = 1 : WScript.Echo Err.Number : Err.Clear ' expect: 201
t.M : WScript.Echo Err.Number : Err.Clear ' expect: 202
x = t : WScript.Echo Err.Number : Err.Clear ' expect: 203
x = t + 1 : WScript.Echo Err.Number : Err.Clear ' expect: 203
Dim bi : Set bi = New BadInit : WScript.Echo Err.Number, TypeName(bi) : Err.Clear ' expect: 204 Empty
Dim bt : Set bt = New BadTerm : Set bt = Nothing : WScript.Echo "after" : Err.Clear
' expect: term
' expect: after
For i = 1 To 3 : x = 1 / (i - 2) : WScript.Echo i, Err.Number : Err.Clear : Next
' expect: 1 0
' expect: 2 11
' expect: 3 0
i = 0 : Do While i < 2 : i = i + 1 : x = 1 / 0 : Loop : WScript.Echo i, Err.Number : Err.Clear ' expect: 2 11
Select Case 1 / 0 : Case 1 : WScript.Echo "one" : Case Else : WScript.Echo "else" : End Select : WScript.Echo Err.Number : Err.Clear
' expect: else
' expect: 11
With Nothing : .x = 1 : WScript.Echo "in with", Err.Number : End With : Err.Clear
' expect: in with 91
Execute "x = 1 /" : WScript.Echo Err.Number, Err.Description, Err.Source : Err.Clear ' expect: 1023 Expected expression Microsoft VBScript compilation error
Execute "x = 1 / 0" : WScript.Echo Err.Number : Err.Clear ' expect: 11
x = Eval("1 / 0") : WScript.Echo Err.Number : Err.Clear ' expect: 11
x = Eval("1 +") : WScript.Echo Err.Number : Err.Clear ' expect: 1023
ExecuteGlobal "Sub Broken" : WScript.Echo Err.Number : Err.Clear ' expect: 1014
Execute "On Error GoTo 0 : x = 1/0" : WScript.Echo Err.Number : Err.Clear ' expect: 11
Sub ZeroInside : On Error GoTo 0 : End Sub
ZeroInside : x = 1 / 0 : WScript.Echo "still on", Err.Number : Err.Clear ' expect: still on 11
Sub Lvl3 : x = CInt("z") : End Sub
Sub Lvl2 : Lvl3 : WScript.Echo "no2" : End Sub
Sub Lvl1 : On Error Resume Next : Lvl2 : WScript.Echo "lvl1", Err.Number : End Sub
Lvl1 ' expect: lvl1 13
WScript.Echo "done", Err.Number ' expect: done 13
Err.Clear : x = undefd.foo : WScript.Echo Err.Number, Err.Description : Err.Clear ' expect: 424 Object required
x = Array(1)(5) : WScript.Echo Err.Number : Err.Clear ' expect: 9
Set x = 5 : WScript.Echo Err.Number : Err.Clear ' expect: 424
Set x = Nothing : x.foo : WScript.Echo Err.Number : Err.Clear ' expect: 91
x = x.foo : WScript.Echo Err.Number : Err.Clear ' expect: 91
x.foo = 1 : WScript.Echo Err.Number : Err.Clear ' expect: 91
x = 5 : x.foo : WScript.Echo Err.Number : Err.Clear ' expect: 424
t.NoSuch : WScript.Echo Err.Number : Err.Clear ' expect: 438
t.NoSuch = 1 : WScript.Echo Err.Number : Err.Clear ' expect: 438
Set t.P = Nothing : WScript.Echo Err.Number : Err.Clear ' expect: 438
x = t.M(1) : WScript.Echo Err.Number : Err.Clear ' expect: 450
x = t.P(1) : WScript.Echo Err.Number : Err.Clear ' expect: 200
Raises 1 : WScript.Echo Err.Number : Err.Clear ' expect: 450
x = Fails(1, 2) : WScript.Echo Err.Number : Err.Clear ' expect: 450
x = 5 : x(0) = 1 : WScript.Echo Err.Number : Err.Clear ' expect: 13
y = x(0) : WScript.Echo Err.Number : Err.Clear ' expect: 13
x = "s" : y = x(1) : WScript.Echo Err.Number : Err.Clear ' expect: 13
Dim fx(2) : fx = 5 : WScript.Echo Err.Number : Err.Clear ' expect: 13
fx(0, 0) = 1 : WScript.Echo Err.Number : Err.Clear ' expect: 9
fx("a") = 1 : WScript.Echo Err.Number : Err.Clear ' expect: 13
fx(-1) = 1 : WScript.Echo Err.Number : Err.Clear ' expect: 9
fx(1.5) = "r" : WScript.Echo fx(2), Err.Number : Err.Clear ' expect: r 0
Dim dy() : dy(0) = 1 : WScript.Echo Err.Number : Err.Clear ' expect: 9
x = UBound(dy) : WScript.Echo Err.Number : Err.Clear ' expect: 9
ReDim dy(2, 3) : ReDim Preserve dy(3, 3) : WScript.Echo Err.Number : Err.Clear ' expect: 9
ReDim Preserve dy(2, 5) : WScript.Echo Err.Number, UBound(dy, 2) : Err.Clear ' expect: 0 5
ReDim Preserve dy(2) : WScript.Echo Err.Number : Err.Clear ' expect: 9
ReDim fx(5) : WScript.Echo Err.Number : Err.Clear ' expect: 10
ReDim dy(-2) : WScript.Echo Err.Number : Err.Clear ' expect: 9
ReDim dy(-1) : WScript.Echo Err.Number, UBound(dy) : Err.Clear ' expect: 0 -1
Erase dy : x = UBound(dy) : WScript.Echo Err.Number : Err.Clear ' expect: 9
fx(1) = 7 : Erase fx : WScript.Echo IsEmpty(fx(1)), UBound(fx) ' expect: True 2
x = 5 : Erase x : WScript.Echo Err.Number : Err.Clear ' expect: 13
Const k = 1
k = 2 : WScript.Echo Err.Number, k : Err.Clear ' expect: 501 1
Set k = Nothing : WScript.Echo Err.Number : Err.Clear ' expect: 501
Len = 5 : WScript.Echo Err.Number : Err.Clear ' expect: 501
x = vbTab : vbTab = "q" : WScript.Echo Err.Number : Err.Clear ' expect: 501
For Each x In 5 : Next : WScript.Echo Err.Number : Err.Clear ' expect: 92
For Each x In Nothing : Next : WScript.Echo Err.Number : Err.Clear ' expect: 92
x = New NoClass : WScript.Echo Err.Number : Err.Clear ' expect: 506
WScript.NoMethod : WScript.Echo Err.Number : Err.Clear ' expect: 438
x = IIf(1, 2, 3) : WScript.Echo Err.Number : Err.Clear ' expect: 13
Format 1 : WScript.Echo Err.Number : Err.Clear ' expect: 13
x = 1 : x = x + Null : WScript.Echo IsNull(x), Err.Number ' expect: True 0
