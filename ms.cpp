#include "MarkupSTL.h"
#include <chrono>
#include <cstdio>
using C=std::chrono::steady_clock;
static std::string rep(const std::string&a,size_t n){std::string r;r.reserve(a.size()*n);for(size_t i=0;i<n;++i)r+=a;return r;}
static void run(const char*n,const std::string&s){auto a=C::now();CMarkupSTL d(s.data(),s.size());bool f=d.FindElem("td_command")&&d.IntoElem()&&d.FindElem("td_header")&&d.IntoElem();std::string u;if(f&&d.FindElem("url"))u=d.GetData();printf("%-20s %8zu %.3f %zu\n",n,s.size(),std::chrono::duration<double>(C::now()-a).count(),u.size());}
int main(){for(size_t m:{1,2,4,8,16}){size_t n=m<<20;run("<!",rep("<!",n/2));run("</a>",rep("</a>",n/4));run("<a>",rep("<a>",n/3));
 std::string h="<td_command><td_header><url>",e="</url></td_header></td_command>";
 run("h <!",h+rep("<!",n/2)+e);run("h <!-",h+rep("<!-",n/3)+e);run("h </",h+rep("</",n/2)+e);run("h <",h+rep("<",n)+e);run("h <=",h+rep("<=",n/2)+e);run("h a</",h+rep("a</",n/3)+e);run("h <a/>",h+rep("<a/>",n/4)+e);
 run("sib",h+e.substr(0,6)+rep("<a/>",n/4)+h+e);
}}
