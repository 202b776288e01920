@echo off
rem Runs larkspan-fleet with the Node beside this file, else with that of the PATH.
setlocal
set "node=%~dp0node.exe"
if not exist "%node%" set "node=node.exe"
"%node%" "%~dp0dist\src\main.js" %*
exit /b %errorlevel%
