# Completion of plenxkit for PowerShell: run this file in the profile, as in
#     . C:\plenxsdk\share\plenxsdk\plenxkit.ps1
# The program itself gives the words. Where it gives no words, PowerShell offers files.

Register-ArgumentCompleter -Native -CommandName plenxkit, plenxkit.exe -ScriptBlock {
    param($typed, $line, $cursor)
    $elements = @($line.CommandElements | ForEach-Object { $_.Extent.Text })
    $before = @($line.CommandElements | Select-Object -Skip 1 |
        Where-Object { $_.Extent.EndOffset -lt $cursor } | ForEach-Object { $_.Extent.Text })
    & $elements[0] complete @before 2>$null |
        Where-Object { $_.StartsWith($typed) -and $_.StartsWith('-') -eq $typed.StartsWith('-') } |
        ForEach-Object { [System.Management.Automation.CompletionResult]::new($_) }
}
