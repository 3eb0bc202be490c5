@echo off
rem Judges a service program on a build server. Copy this file and known.txt beside your sources.
rem
rem   judge.cmd PROGRAM [FOLDER]
rem
rem The results go to the folder as judge.json, judge.xml (JUnit) and judge.html. The exit code is that of
rem plenxkit judge: 0 when all is as expected.
rem
rem PLENXSDK             the folder of the unpacked SDK; without it, the one around this file
rem PLENX_JUDGE_OPTIONS  more options, such as --role phone --soak 60
setlocal
if "%~1"=="" echo usage: judge.cmd PROGRAM [FOLDER]
if "%~1"=="" exit /b 2
if "%PLENXSDK%"=="" set PLENXSDK=%~dp0..\..
set RESULTS=%~2
if "%RESULTS%"=="" set RESULTS=.
if not exist "%RESULTS%" mkdir "%RESULTS%"
"%PLENXSDK%\bin\plenxkit.exe" judge --service "%~1" --strict --known "%~dp0known.txt" --json "%RESULTS%\judge.json" --junit "%RESULTS%\judge.xml" --html "%RESULTS%\judge.html" %PLENX_JUDGE_OPTIONS%
exit /b %ERRORLEVEL%
