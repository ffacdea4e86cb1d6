// The support kit's strings.

#include <SupportDefs.h>
#include <TypeConstants.h>

const char* B_EMPTY_STRING = "";

const char* B_URL_HTTP = "application/x-vnd.Be.URL.http";
const char* B_URL_HTTPS = "application/x-vnd.Be.URL.https";
const char* B_URL_FTP = "application/x-vnd.Be.URL.ftp";
const char* B_URL_GOPHER = "application/x-vnd.Be.URL.gopher";
const char* B_URL_MAILTO = "application/x-vnd.Be.URL.mailto";
const char* B_URL_NEWS = "application/x-vnd.Be.URL.news";
const char* B_URL_NNTP = "application/x-vnd.Be.URL.nntp";
const char* B_URL_TELNET = "application/x-vnd.Be.URL.telnet";
const char* B_URL_RLOGIN = "application/x-vnd.Be.URL.rlogin";
const char* B_URL_TN3270 = "application/x-vnd.Be.URL.tn3270";
const char* B_URL_WAIS = "application/x-vnd.Be.URL.wais";
const char* B_URL_FILE = "application/x-vnd.Be.URL.file";
