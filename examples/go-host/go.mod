module go-host

go 1.19
