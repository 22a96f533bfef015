@echo off
rem Opens the program on a made-up clinic in a folder of the user's own, which is made at the first start.
setlocal
set "clinic=%LOCALAPPDATA%\Corvane Reporter\demo"
if not exist "%clinic%\corvane.ini" "%~dp0corvane-demo-clinic.exe" "%clinic%"
start "" "%~dp0corvane-reporter.exe" --folder "%clinic%"
