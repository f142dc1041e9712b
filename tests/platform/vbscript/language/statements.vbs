Dim i, s, n
' For: limits once, value behind the end, negative and fractional steps
For i = 1 To 3 : s = s & i : Next
WScript.Echo s, i                                   ' expect: 123 4
n = 2 : s = ""
For i = 1 To n : n = 10 : s = s & i : Next
WScript.Echo s                                      ' expect: 12
s = "" : For i = 5 To 1 Step -2 : s = s & i & "," : Next
WScript.Echo s, i                                   ' expect: 5,3,1, -1
s = "" : For i = 0 To 1 Step 0.25 : s = s & i & " " : Next
WScript.Echo s                                      ' expect: 0 0.25 0.5 0.75 1
For i = 1 To 0 : WScript.Echo "never" : Next
WScript.Echo i                                      ' expect: 1
For i = 1 To 10
  If i = 4 Then Exit For
Next
WScript.Echo i                                      ' expect: 4
i = 0 : Do While i < 3 : i = i + 1 : Loop
WScript.Echo i                                      ' expect: 3
Do Until i = 0 : i = i - 1 : Loop
WScript.Echo i                                      ' expect: 0
Do : i = i + 1 : Loop While i < 5
WScript.Echo i                                      ' expect: 5
Do : i = i + 1 : Loop Until i >= 7
WScript.Echo i                                      ' expect: 7
Do
  i = i + 1
  If i > 9 Then Exit Do
Loop
WScript.Echo i                                      ' expect: 10
While i > 8 : i = i - 1 : Wend
WScript.Echo i                                      ' expect: 8
If i = 8 Then WScript.Echo "one" : WScript.Echo "two" Else WScript.Echo "no"
' expect: one
' expect: two
If i = 9 Then WScript.Echo "no" Else If i = 8 Then WScript.Echo "nested" Else WScript.Echo "no"
' expect: nested
If i = 9 Then
  WScript.Echo "no"
ElseIf i = 8 Then WScript.Echo "elseif" ' expect: elseif
Else
  WScript.Echo "no"
End If
If i = 8 Then WScript.Echo "same line" End If
' expect: same line
If Null Then WScript.Echo "no" Else WScript.Echo "null is false"
' expect: null is false
Select Case i
  Case 1, 2 : WScript.Echo "no"
  Case 3, 8, 9
    WScript.Echo "eight"                            ' expect: eight
  Case Else : WScript.Echo "no"
End Select
Select Case "a" : Case "A" : WScript.Echo "no" : Case Else : WScript.Echo "else" : End Select
' expect: else
Select Case True
  Case i > 100 : WScript.Echo "no"
  Case i > 5 : WScript.Echo "true case"             ' expect: true case
End Select
s = "con" & _
    "tinued" : rem a remark : WScript.Echo "no"
WScript.Echo s ' expect: continued
Dim [my name], [if]
[my name] = 1 : [if] = 2
WScript.Echo [my name] + [IF]                       ' expect: 3
WScript.Echo &HFFFF, &HFFFF&, &O17, &H8000, TypeName(&H7FFF), TypeName(32768), 1e3, .5
' expect: -1 65535 15 -32768 Integer Long 1000 0.5
WScript.Echo #1/31/2000#, #31 Jan 2000#, #2000-01-31 10:30:00 PM#, #13/2/2001#
' expect: 1/31/2000 1/31/2000 1/31/2000 10:30:00 PM 2/13/2001
Const kOne = 1, kText = "x", kNeg = -5
WScript.Echo kOne & kText & kNeg                    ' expect: 1x-5
Dim d : For Each d In Array(1, "b", 3) : WScript.Echo d : Next
' expect: 1
' expect: b
' expect: 3
Dim g(1, 2) : n = 0
For Each d In g : n = n + 1 : Next
WScript.Echo n                                      ' expect: 6
n = 5 >< 4 : WScript.Echo n, 3 =< 4, 3 => 4         ' expect: True True False
