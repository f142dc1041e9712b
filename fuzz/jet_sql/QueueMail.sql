INSERT INTO tblMailQue(Device_Name, Device_Port, Mail_To ,Mail_Subject ,Mail_Body) VALUES ( 'gamma', '21', 'x@y', 's', 'b
2');