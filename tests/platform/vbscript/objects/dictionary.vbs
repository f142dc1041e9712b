' Scripting.Dictionary: order, kinds of keys, missing keys, errors.
Dim d, k, line
Set d = CreateObject("Scripting.Dictionary")
WScript.Echo TypeName(d) & " " & d.Count ' expect: Dictionary 0
d.Add "b", 1
d.Add "a", 2
d("c") = 3
d.Item("b") = 10
WScript.Echo Join(d.Keys, ",") & " " & d("b") & d.Item("a") & d("c") ' expect: b,a,c 1023
WScript.Echo d.Exists("B") & " " & d.Exists("b") ' expect: False True
WScript.Echo IsEmpty(d("new")) & " " & d.Count ' expect: True 4
d.Remove "new"
d.Key("a") = "z"
For Each k In d
  line = line & k & "=" & d(k) & ";"
Next
WScript.Echo line ' expect: b=10;z=2;c=3;
WScript.Echo d.Items()(0) + d.Items()(2) ' expect: 13

' 1 and "1" differ; the kind of number does not matter.
d.RemoveAll
d.Add 1, "number"
d.Add "1", "text"
WScript.Echo d.Count & " " & d(1.0) & " " & d(CLng(1)) & " " & d("1") ' expect: 2 number number text

' Objects as keys and as items.
Dim other
Set other = CreateObject("Scripting.Dictionary")
d.Add other, "object key"
Set d("inner") = other
other("x") = 5
WScript.Echo d(other) & " " & d("inner")("x") & " " & d("inner").Count ' expect: object key 5 1

On Error Resume Next
d.Add 1, 0
WScript.Echo Err.Number & " " & Err.Description ' expect: 457 This key is already associated with an element of this collection
Err.Clear
d.Remove "absent"
WScript.Echo Err.Number & " " & Err.Description ' expect: 32811 Element not found
Err.Clear
d.CompareMode = 1
WScript.Echo Err.Number ' expect: 5
Err.Clear
d.Add Array(1), 1
WScript.Echo Err.Number ' expect: 5
Err.Clear
d.Add "alone"
WScript.Echo Err.Number ' expect: 450
Err.Clear
d.NoSuchMember
WScript.Echo Err.Number ' expect: 438
Err.Clear
On Error GoTo 0

d.RemoveAll
d.CompareMode = vbTextCompare
d("Key") = 1
d("KEY") = 2
WScript.Echo d.Count & " " & d("key") & " " & Join(d.Keys, ",") ' expect: 1 2 Key

' Growth and removal in the middle keep every other key reachable and the order.
Dim i, wrong
d.RemoveAll
For i = 1 To 2000
  d.Add "k" & i, i
Next
For i = 1 To 2000 Step 2
  d.Remove "k" & i
Next
For i = 2 To 2000 Step 2
  If d("k" & i) <> i Then wrong = wrong + 1
Next
WScript.Echo d.Count & " " & wrong & " " & d.Keys()(0) & " " & d.Keys()(999) ' expect: 1000  k2 k2000
