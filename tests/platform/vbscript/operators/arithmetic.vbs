Sub T(v) : WScript.Echo TypeName(v), v : End Sub
T 1 + 1            ' expect: Integer 2
T 32767 + 1        ' expect: Long 32768
T 2147483647 + 1   ' expect: Double 2147483648
T 200 * 200        ' expect: Long 40000
T CByte(200) + CByte(100) ' expect: Integer 300
T True + True      ' expect: Integer -2
T "2" + 3          ' expect: Double 5
T "2" + "3"        ' expect: String 23
T Empty + "x"      ' expect: String x
T Empty + Empty    ' expect: Integer 0
T 7 / 2            ' expect: Double 3.5
T 7 \ 2            ' expect: Integer 3
T -7 \ 2           ' expect: Integer -3
T -7 Mod 3         ' expect: Integer -1
T 10 Mod 3.7       ' expect: Long 2
T 2.5 \ 1          ' expect: Long 2
T 3.5 \ 1          ' expect: Long 4
T -2 ^ 2           ' expect: Double -4
T 2 ^ -1           ' expect: Double 0.5
T 2 ^ 3 ^ 2        ' expect: Double 64
T -32768           ' expect: Long -32768
T CSng(1) / 3      ' expect: Single 0.3333333
T CCur("1.5") + 1  ' expect: Currency 2.5
T CCur(2) * 1.5    ' expect: Double 3
T CCur(1.00005)    ' expect: Currency 1
T #1/1/2000# + 1   ' expect: Date 1/2/2000
T #1/3/2000# - #1/1/2000# ' expect: Double 2
T 1 + Null         ' expect: Null Null
T 1 & 2            ' expect: String 12
T "a" & Null       ' expect: String a
T Null & Null      ' expect: Null Null
T 1 + 2 & 3 * 4    ' expect: String 312
T 12 \ 5 * 2       ' expect: Integer 1
T 1e308 * 1        ' expect: Double 1E+308
T 0.00001          ' expect: Double 1E-05
T 123456789012345678 ' expect: Double 1.23456789012346E+17
T "&H10" + 0       ' expect: Double 16
T "(5)" + 0        ' expect: Double -5
T "1,234.5" * 1    ' expect: Double 1234.5
T "$3" * 1         ' expect: Double 3
T - "4"            ' expect: Double -4
T -True            ' expect: Integer 1
T 5 And 3          ' expect: Integer 1
T Not 5            ' expect: Integer -6
T True Xor False   ' expect: Boolean True
T 5 Eqv 3          ' expect: Integer -7
T 5 Imp 3          ' expect: Integer -5
T "1" Or 2         ' expect: Long 3
T Null And 0       ' expect: Integer 0
T Null Or True     ' expect: Boolean True
T Not Null         ' expect: Null Null
T False Imp Null   ' expect: Boolean True
T Null Imp True    ' expect: Boolean True
T Null Xor True    ' expect: Null Null
