@echo off
rem Double-click this file. It asks for administrator rights, runs the verification, and keeps the
rem window open. With options, which plenxkit verify explains, it does neither.
setlocal
set "here=%~dp0"
set "self=%~f0"
set "kit=%here%programs\plenxkit.exe"
if not exist "%kit%" (
    echo This file needs the folder "programs" beside it. Please unpack the whole ZIP first.
    if "%~1"=="" pause
    exit /b 2
)
if not "%~1"=="" goto options
rem Only an administrator may list the filters of the file systems.
fltmc >nul 2>&1
if not errorlevel 1 goto run
echo This needs administrator rights. Windows asks for them now.
powershell -NoProfile -Command "Start-Process -FilePath $env:self -Verb RunAs"
if errorlevel 1 (
    echo It has not begun. Right-click verify.cmd and choose "Run as administrator".
    pause
)
exit /b
:options
"%kit%" verify %*
exit /b %errorlevel%
:run
"%kit%" verify --out "%here%results"
set code=%errorlevel%
echo.
if %code% gtr 5 set strange=yes
if %code% lss 0 set strange=yes
if defined strange echo plenxkit.exe did not run to its end. Please send this number: %code%
pause
exit /b %code%
