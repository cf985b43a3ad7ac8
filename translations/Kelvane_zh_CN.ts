<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en_US">
<context>
    <name>kvn::CheckData</name>
    <message>
        <source>The data is error</source>
        <translation>数据有误</translation>
    </message>
</context>
<context>
    <name>kvn::System</name>
    <message>
        <source>Station Point</source>
        <translation>测站点</translation>
    </message>
    <message>
        <source>Prism Point</source>
        <translation>棱镜点</translation>
    </message>
    <message>
        <source>NetworkDataInfo</source>
        <translation>控制网数据</translation>
    </message>
    <message>
        <source>Coordinate Point</source>
        <translation>坐标点</translation>
    </message>
    <message>
        <source>Data error</source>
        <translation>数据错误</translation>
    </message>
    <message>
        <source>Know point is not enough</source>
        <translation>已知点数量不足</translation>
    </message>
    <message>
        <source>Station point is not enough</source>
        <translation>测站点不足</translation>
    </message>
    <message>
        <source>Know point name repeat</source>
        <translation>已知点点名重复</translation>
    </message>
    <message>
        <source>Station Point Name %1 Repeat</source>
        <translation>测站点点名 %1 重复</translation>
    </message>
    <message>
        <source>Sight point name repeat</source>
        <translation>照准点点名重复</translation>
    </message>
    <message>
        <source>All Station Point is known</source>
        <translation>所有测站点均为已知点</translation>
    </message>
    <message>
        <source>Horizontal Angle repeat</source>
        <translation>水平角重复</translation>
    </message>
    <message>
        <source>Known points are not enough</source>
        <translation>已知点不足</translation>
    </message>
    <message>
        <source>line %1</source>
        <translation>第 %1 行</translation>
    </message>
    <message>
        <source> name:</source>
        <translation> 名称：</translation>
    </message>
    <message>
        <source>The import file data is empty</source>
        <translation>导入文件中没有数据</translation>
    </message>
    <message>
        <source>The network lines are not in the project file, which holds the observation rows</source>
        <translation>项目文件保存的是观测数据，不包含控制网的观测边</translation>
    </message>
    <message>
        <source>There is no adjustment result</source>
        <translation>没有平差结果</translation>
    </message>
    <message>
        <source>There is no observation data</source>
        <translation>没有观测数据</translation>
    </message>
    <message>
        <source>Network Data is empty</source>
        <translation>控制网数据为空</translation>
    </message>
    <message>
        <source>View Data is empty</source>
        <translation>观测数据为空</translation>
    </message>
    <message>
        <source>The observations come from a file whose import failed: they are not written over the file that was open before</source>
        <translation>观测数据来自导入失败的文件，不会覆盖先前打开的文件</translation>
    </message>
    <message>
        <source>No instrument job was read into the project</source>
        <translation>项目尚未读入仪器作业文件</translation>
    </message>
    <message>
        <source>The line %1 is not drawn: an end has no coordinates</source>
        <translation>未绘制边 %1：有一个端点没有坐标</translation>
    </message>
    <message>
        <source>generate map data failed</source>
        <translation>生成地图数据失败</translation>
    </message>
    <message>
        <source>The data is error or inconsistent, please check the data</source>
        <translation>数据有误或不一致，请检查数据</translation>
    </message>
    <message>
        <source>User Cancel</source>
        <translation>用户取消</translation>
    </message>
    <message>
        <source>The configuration file %1 is not valid JSON; the default settings are used</source>
        <translation>配置文件 %1 不是有效的 JSON，将使用默认设置</translation>
    </message>
    <message>
        <source>The configuration file %1: %2; the default settings are used</source>
        <translation>配置文件 %1：%2，将使用默认设置</translation>
    </message>
    <message>
        <source>The configuration file %1 is not valid JSON; it is kept as %2</source>
        <translation>配置文件 %1 不是有效的 JSON，已另存为 %2</translation>
    </message>
    <message>
        <source>The configuration was not written: %1</source>
        <translation>未能写入配置：%1</translation>
    </message>
    <message>
        <source>it could not be read before, and what it holds would be lost</source>
        <translation>此前未能读取，写入会丢失其中的内容</translation>
    </message>
    <message>
        <source>The direction from %1 to %2 is given more than once; the first one counts</source>
        <translation>%1 至 %2 的方向值重复给出，以第一个为准</translation>
    </message>
    <message>
        <source>The distance from %1 to %2 is given more than once; the first one counts</source>
        <translation>%1 至 %2 的距离重复给出，以第一个为准</translation>
    </message>
    <message>
        <source>Line 1 is empty: the a-priori errors that stand there are not read</source>
        <translation>第 1 行为空：未读到该行应给出的先验中误差</translation>
    </message>
    <message>
        <source>the line is no UTF-8</source>
        <translation>该行不是 UTF-8 编码</translation>
    </message>
    <message>
        <source>Line %1 is passed over: %2</source>
        <translation>跳过第 %1 行：%2</translation>
    </message>
    <message>
        <source>Line %1 has something behind a number: %2</source>
        <translation>第 %1 行的数值后面有多余内容：%2</translation>
    </message>
    <message>
        <source>Line %1: the direction from %2 to %3 is no angle: %4</source>
        <translation>第 %1 行：%2 至 %3 的方向值不是角度：%4</translation>
    </message>
    <message>
        <source>Line %1: minutes or seconds of 60 and above in %2</source>
        <translation>第 %1 行：%2 中的分或秒大于等于 60</translation>
    </message>
    <message>
        <source>Line %1: the angle is larger than 360 degrees: %2</source>
        <translation>第 %1 行：角度大于 360 度：%2</translation>
    </message>
    <message>
        <source>The name cannot stand in a network file: %1</source>
        <translation>点名不能写入控制网文件：%1</translation>
    </message>
    <message>
        <source>A number of %1 is not finite</source>
        <translation>%1 的某个数值不是有限数</translation>
    </message>
    <message>
        <source>The distance from %1 to %2 is negative</source>
        <translation>%1 至 %2 的距离为负值</translation>
    </message>
    <message>
        <source>The Format of Data is wrong</source>
        <translation>数据格式错误</translation>
    </message>
    <message>
        <source>The file was not written: %1</source>
        <translation>未能写入文件：%1</translation>
    </message>
    <message>
        <source>The legend codes were not read: %1</source>
        <translation>未读取图例编码：%1</translation>
    </message>
    <message>
        <source>%1 cannot be written in the encoding %2</source>
        <translation>%1 无法以编码 %2 写出</translation>
    </message>
    <message>
        <source>the file belongs to a group that the new one cannot be given</source>
        <translation>文件所属的组无法赋予新文件</translation>
    </message>
    <message>
        <source>the disk does not confirm it: the new file is in its place, but may be lost if the power fails now</source>
        <translation>文件已就位，但若此时断电可能丢失</translation>
    </message>
    <message>
        <source>the file is larger than 2 GB</source>
        <translation>文件大于 2 GB</translation>
    </message>
    <message>
        <source>no such file</source>
        <translation>没有此文件</translation>
    </message>
    <message>
        <source>the file cannot be read</source>
        <translation>文件无法读取</translation>
    </message>
    <message>
        <source>the file could not be read to its end</source>
        <translation>文件未能读到末尾</translation>
    </message>
    <message>
        <source>it has become shorter meanwhile</source>
        <translation>文件在读取过程中变短</translation>
    </message>
    <message>
        <source>not a regular file</source>
        <translation>不是普通文件</translation>
    </message>
    <message>
        <source>the file is write-protected</source>
        <translation>文件受写保护</translation>
    </message>
    <message>
        <source>the file has a second name (a hard link), which would keep the old contents</source>
        <translation>该文件另有名称（硬链接），其内容将保持旧状</translation>
    </message>
    <message>
        <source>the link leads nowhere</source>
        <translation>链接指向的文件不存在</translation>
    </message>
    <message>
        <source>the name cannot be written in the encoding of file names</source>
        <translation>该名称无法用文件名的编码表示</translation>
    </message>
    <message>
        <source>the number is not finite: %1</source>
        <translation>数值不是有限数：%1</translation>
    </message>
    <message>
        <source>something stands behind the number: %1</source>
        <translation>数值后面有多余内容：%1</translation>
    </message>
    <message>
        <source>the angle is no number: %1</source>
        <translation>角度不是数值：%1</translation>
    </message>
    <message>
        <source>minutes or seconds of 60 and above: %1</source>
        <translation>分或秒大于等于 60：%1</translation>
    </message>
    <message>
        <source>the angle is larger than 360 degrees: %1</source>
        <translation>角度大于 360 度：%1</translation>
    </message>
    <message>
        <source>the line is empty: the a-priori errors that stand there are not read</source>
        <translation>该行为空：未读到应在此行给出的先验中误差</translation>
    </message>
    <message>
        <source>the line is passed over: %1</source>
        <translation>跳过该行：%1</translation>
    </message>
    <message>
        <source>what stands behind a blank is passed over: %1</source>
        <translation>忽略空格之后的内容：%1</translation>
    </message>
    <message>
        <source>the record has no height and is read without its name</source>
        <translation>该记录没有高程，读入时不带点名</translation>
    </message>
    <message>
        <source>the coordinates are read in the order X, Y, Z, whatever the label says</source>
        <translation>坐标一律按 X、Y、Z 的顺序读取，不论标注如何</translation>
    </message>
    <message>
        <source>more than three values: a decimal comma?</source>
        <translation>数值多于三个：小数点是否写成了逗号？</translation>
    </message>
    <message>
        <source>the station is lost: its first sight is taken for the back sight before it</source>
        <translation>该测站丢失：其第一个照准被当作前一测站的后视</translation>
    </message>
    <message>
        <source>the sight is dropped: the next one of the point takes its place</source>
        <translation>该照准被舍弃：由同一点的下一个照准代替</translation>
    </message>
    <message>
        <source>the sight has no readings</source>
        <translation>该照准没有读数</translation>
    </message>
    <message>
        <source>The line %1 is wrong</source>
        <translation>第 %1 行有误</translation>
    </message>
    <message>
        <source>The file is empty</source>
        <translation>文件为空</translation>
    </message>
    <message>
        <source>The Staion %1 of Back View is backward Fore View</source>
        <translation>测站 %1 的后视位于前视之后</translation>
    </message>
    <message>
        <source>The Staion %1 of Back View isn&apos;t existed</source>
        <translation>测站 %1 缺少后视</translation>
    </message>
    <message>
        <source>The Station %1 of Fore View isn&apos;t existed</source>
        <translation>测站 %1 缺少前视</translation>
    </message>
    <message>
        <source>The Station %1 of Prism Point %2 of Fore View are redundant observations</source>
        <translation>测站 %1 的前视棱镜点 %2 有多余观测</translation>
    </message>
    <message>
        <source>The Station %1 of Back View are multiple</source>
        <translation>测站 %1 有多个后视</translation>
    </message>
    <message>
        <source>The Station %1 of Prism Point %2 of 2C value error of horizontal angle exist error</source>
        <translation>测站 %1 的棱镜点 %2 水平角 2C 互差超限</translation>
    </message>
    <message>
        <source>The Station %1 of Prism Point %2 of each loop different value error exist error</source>
        <translation>测站 %1 的棱镜点 %2 各测回互差超限</translation>
    </message>
    <message>
        <source>The Station %1 of Prism Point %2 of zero differential of horizontal angle exist error</source>
        <translation>测站 %1 的棱镜点 %2 水平角归零差超限</translation>
    </message>
    <message>
        <source>The Staion %1 of Prism Point %2 of collimation error of vertical angle exist error</source>
        <translation>测站 %1 的棱镜点 %2 竖直角指标差超限</translation>
    </message>
    <message>
        <source>The Staion %1 of Prism Point %2 of each loop different value exist error</source>
        <translation>测站 %1 的棱镜点 %2 各测回较差超限</translation>
    </message>
    <message>
        <source>The Staion %1 of Prism Point %2 of the maximum of distance variance exist error</source>
        <translation>测站 %1 的棱镜点 %2 距离最大较差超限</translation>
    </message>
    <message>
        <source>The Staion %1 of Prism Point %2 of the each measurement of maximum of distance variance</source>
        <translation>测站 %1 的棱镜点 %2 各次测距的最大较差超限</translation>
    </message>
    <message>
        <source>The Station %1 of Prism Point %2 is different of Back View</source>
        <translation>测站 %1 的棱镜点 %2 与后视不一致</translation>
    </message>
    <message>
        <source>the line %1 row_number is empty</source>
        <translation>第 %1 行的点名为空</translation>
    </message>
    <message>
        <source>The line %1 error</source>
        <translation>第 %1 行错误</translation>
    </message>
    <message>
        <source>Station point name %1 error</source>
        <translation>测站点 %1 有误</translation>
    </message>
    <message>
        <source>Station name [%1] distance is 0</source>
        <translation>测站 [%1] 的距离为 0</translation>
    </message>
    <message>
        <source>Known points without an observation: %1</source>
        <translation>没有观测值的已知点：%1</translation>
    </message>
    <message>
        <source>Known stations with different heights, of which the first counts: %1</source>
        <translation>已知测站的高程前后不一致，以第一个为准：%1</translation>
    </message>
    <message>
        <source>Stations that were set up with different instrument heights, of which the first counts: %1</source>
        <translation>测站各次设站的仪器高不一致，以第一个为准：%1</translation>
    </message>
    <message>
        <source>Points without coordinates: %1</source>
        <translation>没有坐标的点：%1</translation>
    </message>
    <message>
        <source>The weights of the robust adjustment do not settle: its results are those of the last of %1 rounds</source>
        <translation>抗差平差的权未能稳定：成果取自 %1 轮中的最后一轮</translation>
    </message>
    <message>
        <source>Known points without an observation are left out: %1</source>
        <translation>没有观测值的已知点不参与计算：%1</translation>
    </message>
    <message>
        <source>total station data is error</source>
        <translation>全站仪数据有误</translation>
    </message>
    <message>
        <source>Calculate Height Failed, The Height Of Data Is Error</source>
        <translation>高程计算失败，数据中的高程有误</translation>
    </message>
    <message>
        <source>Triangulation Height Require The Information Of Distance</source>
        <translation>三角高程计算需要距离信息</translation>
    </message>
    <message>
        <source>Traverse Point</source>
        <translation>导线点</translation>
    </message>
    <message>
        <source>Network</source>
        <translation>控制网</translation>
    </message>
    <message>
        <source>Coordinate Point [%1] insert successfully</source>
        <translation>坐标点 [%1] 插入成功</translation>
    </message>
    <message>
        <source>Know Point [%1] insert successfully</source>
        <translation>已知点 [%1] 插入成功</translation>
    </message>
    <message>
        <source>kvn core error:project is not open</source>
        <translation>内核错误：项目未打开</translation>
    </message>
    <message>
        <source>kvn core error:system is not init</source>
        <translation>内核错误：系统未初始化</translation>
    </message>
    <message>
        <source>kvn core error:MapScene is not exist</source>
        <translation>内核错误：地图场景不存在</translation>
    </message>
    <message>
        <source>cat not find Command</source>
        <translation>找不到该命令</translation>
    </message>
    <message>
        <source>noRedo</source>
        <translation>没有可重做的操作</translation>
    </message>
    <message>
        <source>noUndo</source>
        <translation>没有可撤销的操作</translation>
    </message>
    <message>
        <source>unknown error</source>
        <translation>未知错误</translation>
    </message>
    <message>
        <source>The index %1 is not in the range 0 to %2</source>
        <translation>序号 %1 不在 0 至 %2 的范围内</translation>
    </message>
    <message>
        <source>The data is error</source>
        <translation>数据有误</translation>
    </message>
    <message>
        <source>Traverse point [%1] remove successfully</source>
        <translation>导线点 [%1] 删除成功</translation>
    </message>
    <message>
        <source>Can not find The Traverse Point</source>
        <translation>找不到该导线点</translation>
    </message>
    <message>
        <source>Network Data [%1] - [%2] remove successfully</source>
        <translation>控制网数据 [%1] - [%2] 删除成功</translation>
    </message>
    <message>
        <source>Can not find The Network Point</source>
        <translation>找不到该控制网点</translation>
    </message>
    <message>
        <source>Can not find the Coordinate Point</source>
        <translation>找不到该坐标点</translation>
    </message>
    <message>
        <source>The point name [%1] same, please reset it</source>
        <translation>点名 [%1] 已存在，请重新设置</translation>
    </message>
    <message>
        <source>Project name cannot contant &quot;.&quot;</source>
        <translation>项目名称不能包含“.”</translation>
    </message>
    <message>
        <source>Can not write file</source>
        <translation>无法写入文件</translation>
    </message>
    <message>
        <source>Line %1: an element with more than %2 attributes</source>
        <translation>第 %1 行：元素的属性超过 %2 个</translation>
    </message>
    <message>
        <source>Can not open file</source>
        <translation>无法打开文件</translation>
    </message>
    <message>
        <source>%1 and %2 more</source>
        <translation>%1 等，另有 %2 个</translation>
    </message>
    <message>
        <source>direction from %1 to %2, %3</source>
        <translation>%1 至 %2 的方向，%3</translation>
    </message>
    <message>
        <source>distance from %1 to %2, %3</source>
        <translation>%1 至 %2 的距离，%3</translation>
    </message>
    <message>
        <source>%1 can move in any direction</source>
        <translation>%1 可向任意方向移动</translation>
    </message>
    <message>
        <source>%1 can move along the azimuth %2 degrees</source>
        <translation>%1 可沿方位角 %2 度移动</translation>
    </message>
    <message>
        <source>%1 can move together along the azimuth %2 degrees</source>
        <translation>%1 可一起沿方位角 %2 度移动</translation>
    </message>
    <message>
        <source>%1 can turn about %2</source>
        <translation>%1 可绕 %2 旋转</translation>
    </message>
    <message>
        <source>%1 can spread from %2</source>
        <translation>%1 可以 %2 为中心缩放</translation>
    </message>
    <message>
        <source>%1 can move against the known points</source>
        <translation>%1 可相对已知点移动</translation>
    </message>
    <message>
        <source>no connection to the known points</source>
        <translation>与已知点没有联系</translation>
    </message>
    <message>
        <source>seen once and without a distance</source>
        <translation>只被观测一次且没有距离</translation>
    </message>
    <message>
        <source>one distance and no direction</source>
        <translation>只有一条距离而没有方向</translation>
    </message>
    <message>
        <source>sees fewer than three points and is not seen</source>
        <translation>观测的点少于三个且未被其他点观测</translation>
    </message>
    <message>
        <source>observed only with points that are not placed themselves</source>
        <translation>只与未能定位的点有观测</translation>
    </message>
    <message>
        <source>too few observations to the placed points</source>
        <translation>与已定位点之间的观测不足</translation>
    </message>
    <message>
        <source>all placed targets on one circle with the station</source>
        <translation>测站与所有已定位的目标在同一圆上</translation>
    </message>
    <message>
        <source>different places agree with the observations</source>
        <translation>有多个位置与观测值相符</translation>
    </message>
    <message>
        <source>held weakly by the observations, or no approximate place found</source>
        <translation>观测图形过弱，或未找到近似位置</translation>
    </message>
    <message>
        <source>No approximate coordinates: %1</source>
        <translation>无法求得近似坐标：%1</translation>
    </message>
    <message>
        <source>%1 (it would lie %2 m north and %3 m east of its coordinates)</source>
        <translation>%1（其位置应在给定坐标以北 %2 m、以东 %3 m）</translation>
    </message>
    <message>
        <source>A known point does not fit the observations: %1</source>
        <translation>一个已知点与观测值不符：%1</translation>
    </message>
    <message>
        <source>An observation does not fit, or one of these known points, and nothing tells which: %1</source>
        <translation>某个观测值或以下已知点之一不符，无法区分：%1</translation>
    </message>
    <message>
        <source>Most of the suspected observations are those of a known point, whose coordinates may be wrong: %1</source>
        <translation>大多数可疑观测值属于同一已知点，其坐标可能有误：%1</translation>
    </message>
    <message>
        <source>One of these known points does not fit the observations: %1</source>
        <translation>以下已知点之一与观测值不符：%1</translation>
    </message>
    <message>
        <source>The observation from %1 to %2 has no usable value or a-priori error</source>
        <translation>从 %1 到 %2 的观测值没有可用的数值或先验误差</translation>
    </message>
    <message>
        <source>Line %1: %2</source>
        <translation>第 %1 行：%2</translation>
    </message>
    <message>
        <source>Two points have the name %1</source>
        <translation>两个点同名：%1</translation>
    </message>
    <message>
        <source>The adjustment does not settle with the suspected observations: they have no weight in it</source>
        <translation>平差在含有疑似粗差观测值时不收敛：这些观测值不参与定权</translation>
    </message>
    <message>
        <source>Not to be told apart from the suspected observations: %1</source>
        <translation>与疑似粗差观测值无法区分：%1</translation>
    </message>
    <message>
        <source>Suspected gross errors: %1</source>
        <translation>疑似粗差：%1</translation>
    </message>
    <message>
        <source>The observations do not hold all points: %1</source>
        <translation>观测值不能固定所有点：%1</translation>
    </message>
    <message>
        <source>Observations between points at one place: %1</source>
        <translation>位置相同的点之间的观测：%1</translation>
    </message>
    <message>
        <source>The normal equations lose their digits: the a-priori errors or the lengths of the sights are too different in size</source>
        <translation>法方程丧失有效数字：先验误差或视线长度相差过大</translation>
    </message>
    <message>
        <source>observed %1&quot; too large</source>
        <translation>观测值偏大 %1″</translation>
    </message>
    <message>
        <source>observed %1&quot; too small</source>
        <translation>观测值偏小 %1″</translation>
    </message>
    <message>
        <source>observed %1 m too long</source>
        <translation>观测值偏长 %1 m</translation>
    </message>
    <message>
        <source>observed %1 m too short</source>
        <translation>观测值偏短 %1 m</translation>
    </message>
    <message>
        <source>perhaps one point under two names, %1 mm from each other</source>
        <translation>可能是同一点的两个点名，相距 %1 mm</translation>
    </message>
    <message>
        <source>lies %1 km from the coordinates that are given for it</source>
        <translation>与给定坐标相距 %1 km</translation>
    </message>
    <message>
        <source>The known points fit with north and east exchanged: unit weight error %1 instead of %2</source>
        <translation>已知点的北坐标与东坐标互换后与观测值相符：单位权中误差为 %1，而不是 %2</translation>
    </message>
    <message>
        <source>The known points fit with north and east exchanged: unit weight error %1</source>
        <translation>已知点的北坐标与东坐标互换后与观测值相符：单位权中误差为 %1</translation>
    </message>
    <message>
        <source>The known points fit with north and east exchanged: shifts of up to %1 m instead of %2 m</source>
        <translation>交换北坐标与东坐标后已知点相符：最大位移为 %1 m，而不是 %2 m</translation>
    </message>
    <message>
        <source>and %1 more</source>
        <translation>及另外 %1 个</translation>
    </message>
    <message>
        <source>row</source>
        <translation>所在行</translation>
    </message>
    <message>
        <source>map</source>
        <translation>图上位置</translation>
    </message>
    <message>
        <source>up to %1</source>
        <translation>最大 %1</translation>
    </message>
    <message>
        <source>What to look at first</source>
        <translation>首先查看</translation>
    </message>
    <message>
        <source>What may cost most stands first: by how much a coordinate may be wrong, where that can be told.</source>
        <translation>影响最大的排在最前：在能够估计时给出坐标可能的误差。</translation>
    </message>
    <message>
        <source>Left out here: %1 more.</source>
        <translation>此处略去其余 %1 条。</translation>
    </message>
    <message>
        <source>Nothing is redundant in the heights: a wrong height difference would not show.</source>
        <translation>高程没有多余观测：错误的高差不会被发现。</translation>
    </message>
    <message>
        <source>Nothing is redundant: a wrong observation would not show anywhere.</source>
        <translation>没有多余观测：错误的观测值不会被发现。</translation>
    </message>
    <message>
        <source>unit weight error %1, expected between %2 and %3 at %4</source>
        <translation>单位权中误差 %1，在置信水平 %4 下应介于 %2 与 %3 之间</translation>
    </message>
    <message>
        <source>The heights agree with their a-priori errors: %1.</source>
        <translation>高程观测与先验误差相符：%1。</translation>
    </message>
    <message>
        <source>The observations agree with their a-priori errors: %1.</source>
        <translation>观测值与先验误差相符：%1。</translation>
    </message>
    <message>
        <source>The heights agree better than their a-priori errors let expect: %1.</source>
        <translation>高程观测优于先验误差：%1。</translation>
    </message>
    <message>
        <source>The observations agree better than their a-priori errors let expect: %1.</source>
        <translation>观测值优于先验误差：%1。</translation>
    </message>
    <message>
        <source>The heights do not agree with their a-priori errors: %1.</source>
        <translation>高程观测与先验误差不符：%1。</translation>
    </message>
    <message>
        <source>The observations do not agree with their a-priori errors: %1.</source>
        <translation>观测值与先验误差不符：%1。</translation>
    </message>
    <message>
        <source>Observations that do not fit the others: %1.</source>
        <translation>与其他观测不符的观测值：%1 个。</translation>
    </message>
    <message>
        <source>A misclosure is larger than the a-priori errors allow (99 %).</source>
        <translation>有闭合差超出先验误差所允许的范围（99 %）。</translation>
    </message>
    <message>
        <source>Nothing checks an open traverse: a wrong observation would not show.</source>
        <translation>支导线没有检核：错误的观测值不会被发现。</translation>
    </message>
    <message>
        <source>All misclosures are within what the a-priori errors allow (99 %).</source>
        <translation>所有闭合差均在先验误差所允许的范围内（99 %）。</translation>
    </message>
    <message>
        <source>The misclosures are not judged.</source>
        <translation>闭合差未作评定。</translation>
    </message>
    <message>
        <source>Coordinates as they were given: nothing was adjusted.</source>
        <translation>坐标为给定值：未作平差。</translation>
    </message>
    <message>
        <source>Least-squares adjustment</source>
        <translation>最小二乘平差</translation>
    </message>
    <message>
        <source>Traverses</source>
        <translation>导线</translation>
    </message>
    <message>
        <source>Open traverse</source>
        <translation>支导线</translation>
    </message>
    <message>
        <source>Connecting traverse</source>
        <translation>附合导线</translation>
    </message>
    <message>
        <source>Closed traverse</source>
        <translation>闭合导线</translation>
    </message>
    <message>
        <source>Trigonometric heights</source>
        <translation>三角高程</translation>
    </message>
    <message>
        <source>Coordinates</source>
        <translation>坐标</translation>
    </message>
    <message>
        <source>Observations</source>
        <translation>观测值</translation>
    </message>
    <message>
        <source>directions %1, distances %2</source>
        <translation>方向 %1 个，距离 %2 个</translation>
    </message>
    <message>
        <source>Observations that do not fit the others: %1, and %2 of them are left out.</source>
        <translation>与其他观测值不符的观测值：%1 个，其中 %2 个已剔除。</translation>
    </message>
    <message>
        <source>Rows that their own tests mark: %1, where one in a thousand is by chance.</source>
        <translation>被自身检验标出的行：%1 个；偶然情况下千分之一会被标出。</translation>
    </message>
    <message>
        <source>Nothing stands out but the rows of the tables that are marked: %1. One in a thousand is by chance.</source>
        <translation>除表中标出的 %1 行外，没有突出之处。偶然情况下千分之一会被标出。</translation>
    </message>
    <message>
        <source>, left out %1</source>
        <translation>，剔除 %1 个</translation>
    </message>
    <message>
        <source>Least-squares adjustment to the letter of the file</source>
        <translation>按文件字面的最小二乘平差</translation>
    </message>
    <message>
        <source>Without coordinates: %1</source>
        <translation>没有坐标的点：%1</translation>
    </message>
    <message>
        <source>the known point does not fit, or another one, or an observation, and nothing tells which: %1</source>
        <translation>该已知点、另一已知点或某个观测值不符，无法判断是哪一个：%1</translation>
    </message>
    <message>
        <source>Limit</source>
        <translation>限差</translation>
    </message>
    <message>
        <source>relative</source>
        <translation>相对闭合差</translation>
    </message>
    <message>
        <source>Redundancy</source>
        <translation>多余观测数</translation>
    </message>
    <message>
        <source>Unit weight error</source>
        <translation>单位权中误差</translation>
    </message>
    <message>
        <source>%1 to %2 expected</source>
        <translation>应为 %1 至 %2</translation>
    </message>
    <message>
        <source>Stations</source>
        <translation>测站</translation>
    </message>
    <message>
        <source>Relative misclosure</source>
        <translation>相对闭合差</translation>
    </message>
    <message>
        <source>Points</source>
        <translation>点</translation>
    </message>
    <message>
        <source>%1 of them known</source>
        <translation>其中已知点 %1 个</translation>
    </message>
    <message>
        <source>Height differences</source>
        <translation>高差</translation>
    </message>
    <message>
        <source>redundancy %1</source>
        <translation>多余观测数 %1</translation>
    </message>
    <message>
        <source>Largest point error</source>
        <translation>最大点位误差</translation>
    </message>
    <message>
        <source>at %1</source>
        <translation>位于 %1</translation>
    </message>
    <message>
        <source>To look at</source>
        <translation>待查看</translation>
    </message>
    <message>
        <source>direction %1″, distance %2 mm + %3 ppm (%4)</source>
        <translation>方向 %1″，距离 %2 mm + %3 ppm（%4）</translation>
    </message>
    <message>
        <source>sum</source>
        <translation>相加</translation>
    </message>
    <message>
        <source>root</source>
        <translation>平方和开方</translation>
    </message>
    <message>
        <source>, centring %1 mm</source>
        <translation>，对中 %1 mm</translation>
    </message>
    <message>
        <source>, known coordinates %1 mm</source>
        <translation>，已知坐标 %1 mm</translation>
    </message>
    <message>
        <source>free: the known points are not held</source>
        <translation>自由网：已知点不固定</translation>
    </message>
    <message>
        <source>known points, each with its own error</source>
        <translation>已知点，各带自身误差</translation>
    </message>
    <message>
        <source>known points, held</source>
        <translation>已知点固定</translation>
    </message>
    <message>
        <source>directions %1</source>
        <translation>方向 %1</translation>
    </message>
    <message>
        <source> (%1″ would fit)</source>
        <translation>（%1″ 相符）</translation>
    </message>
    <message>
        <source>distances %1</source>
        <translation>距离 %1</translation>
    </message>
    <message>
        <source> (%1 mm + %2 ppm would fit)</source>
        <translation>（%1 mm + %2 ppm 相符）</translation>
    </message>
    <message>
        <source>observations that weigh less: %1, of these nothing: %2</source>
        <translation>降权的观测值：%1 个，其中权为零：%2 个</translation>
    </message>
    <message>
        <source>Datum</source>
        <translation>基准</translation>
    </message>
    <message>
        <source>A-priori errors</source>
        <translation>先验误差</translation>
    </message>
    <message>
        <source>Errors of results</source>
        <translation>成果误差</translation>
    </message>
    <message>
        <source>by the a-priori unit weight error, 1</source>
        <translation>按先验单位权中误差 1</translation>
    </message>
    <message>
        <source>by the unit weight error of this run</source>
        <translation>按本次平差的单位权中误差</translation>
    </message>
    <message>
        <source>Confidence</source>
        <translation>置信水平</translation>
    </message>
    <message>
        <source>By kind</source>
        <translation>分类</translation>
    </message>
    <message>
        <source>Robust weights</source>
        <translation>抗差权</translation>
    </message>
    <message>
        <source>Left out</source>
        <translation>已剔除</translation>
    </message>
    <message>
        <source>observations: %1</source>
        <translation>观测值 %1 个</translation>
    </message>
    <message>
        <source>Iterations</source>
        <translation>迭代次数</translation>
    </message>
    <message>
        <source>A-priori errors of heights</source>
        <translation>高程先验误差</translation>
    </message>
    <message>
        <source>zenith angle %1″, distance %2 mm + %3 ppm, instrument and target %4 mm</source>
        <translation>天顶距 %1″，距离 %2 mm + %3 ppm，仪器高与目标高 %4 mm</translation>
    </message>
    <message>
        <source>Refraction</source>
        <translation>折光系数</translation>
    </message>
    <message>
        <source>File</source>
        <translation>文件</translation>
    </message>
    <message>
        <source>Method</source>
        <translation>方法</translation>
    </message>
    <message>
        <source>Heights</source>
        <translation>高程</translation>
    </message>
    <message>
        <source>Point</source>
        <translation>点名</translation>
    </message>
    <message>
        <source>Height</source>
        <translation>高程</translation>
    </message>
    <message>
        <source>standard error of the height</source>
        <translation>高程中误差</translation>
    </message>
    <message>
        <source>Remark</source>
        <translation>备注</translation>
    </message>
    <message>
        <source>known</source>
        <translation>已知</translation>
    </message>
    <message>
        <source>does not fit</source>
        <translation>不符</translation>
    </message>
    <message>
        <source>unchecked</source>
        <translation>无检核</translation>
    </message>
    <message>
        <source>From</source>
        <translation>起点</translation>
    </message>
    <message>
        <source>To</source>
        <translation>终点</translation>
    </message>
    <message>
        <source>Distance</source>
        <translation>距离</translation>
    </message>
    <message>
        <source>horizontal distance</source>
        <translation>水平距离</translation>
    </message>
    <message>
        <source>Difference</source>
        <translation>高差</translation>
    </message>
    <message>
        <source>of height, from mark to mark</source>
        <translation>两标志之间的高差</translation>
    </message>
    <message>
        <source>a-priori standard error</source>
        <translation>先验中误差</translation>
    </message>
    <message>
        <source>residual: adjusted minus observed</source>
        <translation>改正数：平差值减观测值</translation>
    </message>
    <message>
        <source>standardised residual</source>
        <translation>标准化残差</translation>
    </message>
    <message>
        <source>Test</source>
        <translation>检验</translation>
    </message>
    <message>
        <source>size of w over its critical value; above 1 is too large for chance</source>
        <translation>w 的绝对值与临界值之比；大于 1 即超出偶然误差</translation>
    </message>
    <message>
        <source>redundancy: the share of an error that shows</source>
        <translation>多余观测分量：误差在残差中显示的比例</translation>
    </message>
    <message>
        <source>Detectable</source>
        <translation>可发现粗差</translation>
    </message>
    <message>
        <source>smallest gross error that the test finds with a power of 80 %</source>
        <translation>检验功效 80 % 时可发现的最小粗差</translation>
    </message>
    <message>
        <source>Line</source>
        <translation>行号</translation>
    </message>
    <message>
        <source>line of the file</source>
        <translation>文件行号</translation>
    </message>
    <message>
        <source>%1 too small</source>
        <translation>偏小 %1</translation>
    </message>
    <message>
        <source>%1 too large</source>
        <translation>偏大 %1</translation>
    </message>
    <message>
        <source>Heights of instruments and targets that do not fit</source>
        <translation>不符的仪器高与目标高</translation>
    </message>
    <message>
        <source>Kind</source>
        <translation>类别</translation>
    </message>
    <message>
        <source>Entered</source>
        <translation>记录值</translation>
    </message>
    <message>
        <source>Sights</source>
        <translation>照准次数</translation>
    </message>
    <message>
        <source>Too large by</source>
        <translation>偏大</translation>
    </message>
    <message>
        <source>instrument</source>
        <translation>仪器</translation>
    </message>
    <message>
        <source>target</source>
        <translation>目标</translation>
    </message>
    <message>
        <source>… (%1 points)</source>
        <translation>…（%1 个点）</translation>
    </message>
    <message>
        <source>Loops that do not close</source>
        <translation>不闭合的环</translation>
    </message>
    <message>
        <source>Loop</source>
        <translation>环</translation>
    </message>
    <message>
        <source>Misclosure</source>
        <translation>闭合差</translation>
    </message>
    <message>
        <source>Allowed at 99 %</source>
        <translation>限差（99 %）</translation>
    </message>
    <message>
        <source>Standardised residuals</source>
        <translation>标准化残差</translation>
    </message>
    <message>
        <source>Larger than 1.96: %1 of %2; by chance it would be about %3. The curve is the normal one.</source>
        <translation>大于 1.96 的：%2 个中有 %1 个；偶然情况下约为 %3 个。曲线为正态曲线。</translation>
    </message>
    <message>
        <source>left out</source>
        <translation>已剔除</translation>
    </message>
    <message>
        <source>weight %1</source>
        <translation>权 %1</translation>
    </message>
    <message>
        <source>Effect</source>
        <translation>影响</translation>
    </message>
    <message>
        <source>what a gross error of that size moves a coordinate by</source>
        <translation>该大小的粗差引起的坐标变动</translation>
    </message>
    <message>
        <source>v residual, w standardised residual, marked from %1 on (0.1 %), r redundancy.</source>
        <translation>v 改正数，w 标准化残差，自 %1 起标记（0.1 %），r 多余观测分量。</translation>
    </message>
    <message>
        <source>Station</source>
        <translation>测站</translation>
    </message>
    <message>
        <source>Target</source>
        <translation>目标</translation>
    </message>
    <message>
        <source>Observed</source>
        <translation>观测值</translation>
    </message>
    <message>
        <source>Directions</source>
        <translation>方向</translation>
    </message>
    <message>
        <source>Distances</source>
        <translation>距离</translation>
    </message>
    <message>
        <source>Orientation</source>
        <translation>定向角</translation>
    </message>
    <message>
        <source>azimuth of the circle&apos;s zero</source>
        <translation>度盘零方向的方位角</translation>
    </message>
    <message>
        <source>standard error of the orientation</source>
        <translation>定向角中误差</translation>
    </message>
    <message>
        <source>redundancy of the scatter</source>
        <translation>离散度的多余观测数</translation>
    </message>
    <message>
        <source>Scatter of directions</source>
        <translation>方向离散度</translation>
    </message>
    <message>
        <source>standard deviation of one round</source>
        <translation>一测回的标准差</translation>
    </message>
    <message>
        <source>Scatter of distances</source>
        <translation>距离离散度</translation>
    </message>
    <message>
        <source>Set-ups</source>
        <translation>设站</translation>
    </message>
    <message>
        <source>Lines after adjustment</source>
        <translation>平差后的边</translation>
    </message>
    <message>
        <source>Azimuth</source>
        <translation>方位角</translation>
    </message>
    <message>
        <source>standard error of the azimuth</source>
        <translation>方位角中误差</translation>
    </message>
    <message>
        <source>standard error of the distance</source>
        <translation>距离中误差</translation>
    </message>
    <message>
        <source>Relative</source>
        <translation>相对误差</translation>
    </message>
    <message>
        <source>known, not held</source>
        <translation>已知，未固定</translation>
    </message>
    <message>
        <source>side shot</source>
        <translation>支点</translation>
    </message>
    <message>
        <source>North x</source>
        <translation>北 x</translation>
    </message>
    <message>
        <source>East y</source>
        <translation>东 y</translation>
    </message>
    <message>
        <source>standard error of the north coordinate</source>
        <translation>北坐标中误差</translation>
    </message>
    <message>
        <source>standard error of the east coordinate</source>
        <translation>东坐标中误差</translation>
    </message>
    <message>
        <source>standard error of the point: root of mx² + my²</source>
        <translation>点位中误差：mx² + my² 的平方根</translation>
    </message>
    <message>
        <source>major semi-axis of the standard error ellipse</source>
        <translation>误差椭圆长半轴</translation>
    </message>
    <message>
        <source>minor semi-axis of the standard error ellipse</source>
        <translation>误差椭圆短半轴</translation>
    </message>
    <message>
        <source>Azimuth of a</source>
        <translation>a 的方位角</translation>
    </message>
    <message>
        <source>Standard errors; ellipses at %1 are %2 times as large.</source>
        <translation>误差为中误差；%1 置信椭圆为其 %2 倍。</translation>
    </message>
    <message>
        <source>This table has %1 of %2 rows: those that matter most. The result files have all.</source>
        <translation>本表列出 %2 行中最重要的 %1 行。成果文件包含全部。</translation>
    </message>
    <message>
        <source>Known points</source>
        <translation>已知点</translation>
    </message>
    <message>
        <source>v: adjusted minus given. Test: of both coordinates together, above 1 is too large for chance.</source>
        <translation>v：平差值减给定值。检验：两坐标一并检验，大于 1 即超出偶然误差。</translation>
    </message>
    <message>
        <source>v north</source>
        <translation>v 北</translation>
    </message>
    <message>
        <source>v east</source>
        <translation>v 东</translation>
    </message>
    <message>
        <source>v: correction. Azimuth and leg lead to the next point.</source>
        <translation>v：改正数。方位角与边指向下一点。</translation>
    </message>
    <message>
        <source>Azimuth and leg lead to the next point.</source>
        <translation>方位角与边指向下一点。</translation>
    </message>
    <message>
        <source>Angle</source>
        <translation>角度</translation>
    </message>
    <message>
        <source>%1 in %2 m of legs, that is %3.</source>
        <translation>%1，边长总和 %2 m，即 %3。</translation>
    </message>
    <message>
        <source>Misclosures</source>
        <translation>闭合差</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>大小</translation>
    </message>
    <message>
        <source>beyond</source>
        <translation>超限</translation>
    </message>
    <message>
        <source>angles</source>
        <translation>角度</translation>
    </message>
    <message>
        <source>along the traverse</source>
        <translation>沿导线方向</translation>
    </message>
    <message>
        <source>across the traverse</source>
        <translation>垂直于导线方向</translation>
    </message>
    <message>
        <source>closing error</source>
        <translation>全长闭合差</translation>
    </message>
    <message>
        <source>Side shots</source>
        <translation>支点</translation>
    </message>
    <message>
        <source>Nothing checks them; their errors are those of the a-priori errors.</source>
        <translation>没有检核；其误差由先验误差推算。</translation>
    </message>
    <message>
        <source>en</source>
        <translation>zh-CN</translation>
    </message>
    <message>
        <source>Summary</source>
        <translation>概要</translation>
    </message>
    <message>
        <source>Computed and written by %1.</source>
        <translation>由 %1 计算并生成。</translation>
    </message>
    <message>
        <source>Whole map</source>
        <translation>全图</translation>
    </message>
    <message>
        <source>Ellipses</source>
        <translation>椭圆</translation>
    </message>
    <message>
        <source>Names</source>
        <translation>点名</translation>
    </message>
    <message>
        <source>Back to the table</source>
        <translation>返回表格</translation>
    </message>
    <message>
        <source>Map</source>
        <translation>图</translation>
    </message>
    <message>
        <source>The plane cannot be adjusted: %1. The heights alone are here.</source>
        <translation>平面无法平差：%1。此处仅有高程。</translation>
    </message>
    <message>
        <source>known point</source>
        <translation>已知点</translation>
    </message>
    <message>
        <source>new point</source>
        <translation>待定点</translation>
    </message>
    <message>
        <source>side point</source>
        <translation>支点</translation>
    </message>
    <message>
        <source>nothing checks it</source>
        <translation>无检核</translation>
    </message>
    <message>
        <source>direction and distance</source>
        <translation>方向与距离</translation>
    </message>
    <message>
        <source>direction</source>
        <translation>方向</translation>
    </message>
    <message>
        <source>distance</source>
        <translation>距离</translation>
    </message>
    <message>
        <source>observed both ways</source>
        <translation>双向观测</translation>
    </message>
    <message>
        <source>suspect</source>
        <translation>可疑</translation>
    </message>
    <message>
        <source>confidence ellipses</source>
        <translation>置信椭圆</translation>
    </message>
    <message>
        <source>standard ellipses</source>
        <translation>误差椭圆</translation>
    </message>
    <message>
        <source>the station comes twice, or one of its targets has its name</source>
        <translation>测站出现两次，或其某个目标与测站同名</translation>
    </message>
    <message>
        <source>the target has the name of its station</source>
        <translation>目标与其测站同名</translation>
    </message>
    <message>
        <source>the horizontal reading is not between 0 and 360 degrees</source>
        <translation>水平读数不在 0 至 360 度之间</translation>
    </message>
    <message>
        <source>the sights of the target do not differ by half a circle</source>
        <translation>该目标的两次照准未相差半圆周</translation>
    </message>
    <message>
        <source>the row checks expect one sight on each face, and there are more</source>
        <translation>数据检查要求盘左盘右各照准一次，此处多于一次</translation>
    </message>
    <message>
        <source>the vertical reading is not between 0 and 360 degrees</source>
        <translation>竖直读数不在 0 至 360 度之间</translation>
    </message>
    <message>
        <source>the known point %1 is given twice</source>
        <translation>已知点 %1 给出两次</translation>
    </message>
    <message>
        <source>the distance is negative: %1</source>
        <translation>距离为负：%1</translation>
    </message>
    <message>
        <source>three a-priori errors are to stand here, such as 2,3,2, and not: %1</source>
        <translation>此处应为三个先验中误差，如 2,3,2，而不是：%1</translation>
    </message>
    <message>
        <source>--points needs a file, not standard input</source>
        <translation>--points 须给出文件，不能用标准输入</translation>
    </message>
    <message>
        <source>Given more than once, in different places: %1</source>
        <translation>多次给出且位置不同：%1</translation>
    </message>
    <message>
        <source>a number is missing or cannot be read</source>
        <translation>缺少数字或数字无法读取</translation>
    </message>
    <message>
        <source>a number is too large</source>
        <translation>数字过大</translation>
    </message>
    <message>
        <source>line %1: %2: an observation from a point to itself</source>
        <translation>第 %1 行：%2：观测的起点和终点是同一点</translation>
    </message>
    <message>
        <source>the observations do not agree with their a-priori errors: unit weight error %1, at most %2 expected</source>
        <translation>观测值与先验误差不符：单位权中误差 %1，预期至多 %2</translation>
    </message>
    <message>
        <source>the file would lose what it holds; another name keeps it: %1</source>
        <translation>文件会丢失其中的内容；换一个文件名可以保留：%1</translation>
    </message>
    <message>
        <source>the attribute %1 is missing</source>
        <translation>缺少属性 %1</translation>
    </message>
    <message>
        <source>no angle in radians</source>
        <translation>不是弧度角</translation>
    </message>
    <message>
        <source>negative</source>
        <translation>为负</translation>
    </message>
    <message>
        <source>the traverses give the point places %1 mm from each other; the first one counts</source>
        <translation>各导线给出的该点位置相差 %1 mm；以第一个为准</translation>
    </message>
    <message>
        <source>%1: fails, for the errors are smaller than expected</source>
        <translation>%1：未通过，因为误差比预期小</translation>
    </message>
    <message>
        <source>the distance is negative</source>
        <translation>距离为负</translation>
    </message>
    <message>
        <source>an odd number of sights: a program that pairs faces by their place refuses them</source>
        <translation>照准次数为奇数：按位置配对盘左盘右的程序将拒绝</translation>
    </message>
    <message>
        <source>a program that pairs faces by their place takes these two for one</source>
        <translation>按位置配对盘左盘右的程序会把这两者当作同一点</translation>
    </message>
    <message>
        <source>a program that keeps distances forward only drops this one at both ends</source>
        <translation>只保留往测距离的程序会在两端都舍去此距离</translation>
    </message>
    <message>
        <source>double collimation error %1</source>
        <translation>2C 值 %1</translation>
    </message>
    <message>
        <source>, index error %1</source>
        <translation>，竖盘指标差 %1</translation>
    </message>
    <message>
        <source>the known point stands twice</source>
        <translation>已知点出现两次</translation>
    </message>
    <message>
        <source>the known point is not observed</source>
        <translation>已知点未被观测</translation>
    </message>
    <message>
        <source>a single observation does not fix the point</source>
        <translation>单个观测值不能确定该点</translation>
    </message>
    <message>
        <source>the distances from both ends differ by %1</source>
        <translation>往返测距离相差 %1</translation>
    </message>
    <message>
        <source>nothing connects the point to most of the others</source>
        <translation>该点与多数其他点没有联系</translation>
    </message>
    <message>
        <source>nothing connects the point to a known one</source>
        <translation>该点与已知点没有联系</translation>
    </message>
    <message>
        <source>the row has no name</source>
        <translation>该行没有点名</translation>
    </message>
    <message>
        <source>the sight stands before any station and is left out</source>
        <translation>该照准位于任何测站之前，已略去</translation>
    </message>
    <message>
        <source>known by its height alone, the station counts as known at 0, 0</source>
        <translation>测站仅高程已知，按平面坐标 0, 0 的已知点处理</translation>
    </message>
    <message>
        <source>the known point has two heights, of which the first counts</source>
        <translation>已知点有两个高程，采用第一个</translation>
    </message>
    <message>
        <source>the known point has two positions</source>
        <translation>已知点有两个位置</translation>
    </message>
    <message>
        <source>the distance has no vertical reading to make it horizontal and is left out</source>
        <translation>该距离没有竖直读数，无法化为平距，已略去</translation>
    </message>
    <message>
        <source>the readings of the target do not belong together</source>
        <translation>该目标的读数不相匹配</translation>
    </message>
    <message>
        <source>the readings of the target differ by more than 30&quot;</source>
        <translation>该目标的读数之差超过 30"</translation>
    </message>
    <message>
        <source>the readings of the first target do not belong together</source>
        <translation>第一个目标的读数不相匹配</translation>
    </message>
    <message>
        <source>the round has no target in common with the others of its station</source>
        <translation>该测回与本站其他测回没有共同目标</translation>
    </message>
    <message>
        <source>the edited direction counts once, in set-up %1 of %2 of its station</source>
        <translation>经编辑的方向只计一次，属于该测站 %2 次设站中的第 %1 次</translation>
    </message>
    <message>
        <source>the set-up has no target in common with the others of its station</source>
        <translation>该次设站与本站其他设站没有共同目标</translation>
    </message>
    <message>
        <source>the direction differs by more than 30&quot; from that of the rounds before</source>
        <translation>该方向与此前测回之差超过 30"</translation>
    </message>
    <message>
        <source>the direction differs by more than 30&quot; from that of the set-ups before</source>
        <translation>该方向与此前设站之差超过 30"</translation>
    </message>
    <message>
        <source>between two rounds the circle moved by more than 30&quot;</source>
        <translation>两测回之间水平度盘变动超过 30"</translation>
    </message>
    <message>
        <source>sighted on one face only</source>
        <translation>仅单盘位照准</translation>
    </message>
    <message>
        <source>the vertical readings of the faces differ by more than 12&apos;</source>
        <translation>盘左盘右竖直读数之差超过 12'</translation>
    </message>
    <message>
        <source>cannot be placed: %1</source>
        <translation>无法定位：%1</translation>
    </message>
    <message>
        <source>an observation between points at one place</source>
        <translation>观测值的两端点位于同一位置</translation>
    </message>
    <message>
        <source>left out: the direction, %1; that moves coordinates by up to %2 m</source>
        <translation>已剔除方向：%1；坐标因此最大变动 %2 m</translation>
    </message>
    <message>
        <source>left out: the distance, %1; that moves coordinates by up to %2 m</source>
        <translation>已剔除距离：%1；坐标因此最大变动 %2 m</translation>
    </message>
    <message>
        <source>it would lie %1 m north and %2 m east of its coordinates</source>
        <translation>其位置应在给定坐标以北 %1 m、以东 %2 m</translation>
    </message>
    <message>
        <source>the known point does not fit the observations: %1</source>
        <translation>该已知点与观测值不符：%1</translation>
    </message>
    <message>
        <source>the known point, or another of these, does not fit the observations: %1</source>
        <translation>该已知点或其中另一点与观测值不符：%1</translation>
    </message>
    <message>
        <source>suspected gross error of the direction: %1</source>
        <translation>方向疑有粗差：%1</translation>
    </message>
    <message>
        <source>suspected gross error of the distance: %1</source>
        <translation>距离疑有粗差：%1</translation>
    </message>
    <message>
        <source>most of the suspected observations are those of this known point, whose coordinates may be wrong</source>
        <translation>多数可疑观测值涉及该已知点，其坐标可能有误</translation>
    </message>
    <message>
        <source>the direction cannot be told apart from a suspected observation</source>
        <translation>该方向与一个可疑观测值无法区分</translation>
    </message>
    <message>
        <source>the distance cannot be told apart from a suspected observation</source>
        <translation>该距离与一个可疑观测值无法区分</translation>
    </message>
    <message>
        <source>the edited line counts once in the place of %1 observations that it had</source>
        <translation>已编辑的边只计一次，取代其原有的 %1 个观测值</translation>
    </message>
    <message>
        <source>the distances given for the line differ by %1 mm, and their mean counts</source>
        <translation>该边给出的多个距离相差 %1 mm，取其平均值</translation>
    </message>
    <message>
        <source>the directions to the target, read in one set-up, do not belong together</source>
        <translation>同一次设站中对该目标的方向值互不相符</translation>
    </message>
    <message>
        <source>%1 to %2 (direction)</source>
        <translation>%1 至 %2（方向）</translation>
    </message>
    <message>
        <source>%1 to %2 (distance)</source>
        <translation>%1 至 %2（距离）</translation>
    </message>
    <message>
        <source>suspected observations are not left out, since a known point may be wrong in their place</source>
        <translation>未剔除可疑观测值，因为出错的也可能是某个已知点</translation>
    </message>
    <message>
        <source>the direction may be the wrong one in the place of that from %1, which is out: no residual tells them apart, and coordinates would be elsewhere by up to %2 m</source>
        <translation>出错的也可能是该方向，而不是已不参与平差的 %1：残差无法区分二者，那时坐标最多相差 %2 m</translation>
    </message>
    <message>
        <source>the distance may be the wrong one in the place of that from %1, which is out: no residual tells them apart, and coordinates would be elsewhere by up to %2 m</source>
        <translation>出错的也可能是该距离，而不是已不参与平差的 %1：残差无法区分二者，那时坐标最多相差 %2 m</translation>
    </message>
    <message>
        <source>the residuals are larger as a whole than the a-priori errors allow, and no single observation or known point explains it: the errors may be too small, or several things wrong</source>
        <translation>残差总体上超出先验误差所允许的范围，没有任何单个观测值或已知点能够解释：先验误差可能过小，或有多处错误</translation>
    </message>
    <message>
        <source>the residuals are larger as a whole than the a-priori errors allow, and no single observation explains it: the errors may be too small, or one of the known points wrong, which nothing tests</source>
        <translation>残差总体上超出先验误差所允许的范围，没有任何单个观测值能够解释：先验误差可能过小，或某个无法检验的已知点有误</translation>
    </message>
    <message>
        <source>the adjustment does not settle with the suspected observations, which have no weight</source>
        <translation>含可疑观测值时平差不收敛，这些观测值的权为零</translation>
    </message>
    <message>
        <source>nothing checks the point</source>
        <translation>该点无检核</translation>
    </message>
    <message>
        <source>nothing checks the points</source>
        <translation>这些点无检核</translation>
    </message>
    <message>
        <source>The unit weight error is far above 1: a gross error, or known points that do not fit</source>
        <translation>单位权中误差远大于 1：存在粗差，或已知点不符</translation>
    </message>
    <message>
        <source>The leg from %1 to %2 has no distance and counts as 0</source>
        <translation>从 %1 到 %2 的边没有距离，按 0 计算</translation>
    </message>
    <message>
        <source>The angles are off by %1; the stations must go around counter-clockwise</source>
        <translation>角度相差 %1；测站须按逆时针方向排列</translation>
    </message>
    <message>
        <source>Stations outside the traverse are left out: %1</source>
        <translation>导线以外的测站已略去：%1</translation>
    </message>
    <message>
        <source>the angle at %1, %2 too small</source>
        <translation>%1 处的角度，偏小 %2</translation>
    </message>
    <message>
        <source>the angle at %1, %2 too large</source>
        <translation>%1 处的角度，偏大 %2</translation>
    </message>
    <message>
        <source>the leg from %1 to %2, %3 too small</source>
        <translation>从 %1 到 %2 的边，偏小 %3</translation>
    </message>
    <message>
        <source>the leg from %1 to %2, %3 too large</source>
        <translation>从 %1 到 %2 的边，偏大 %3</translation>
    </message>
    <message>
        <source>: it would be explained by %1</source>
        <translation>：可由以下解释：%1</translation>
    </message>
    <message>
        <source>; and %1 more</source>
        <translation>；及另外 %1 个</translation>
    </message>
    <message>
        <source>: it would be explained by one of: %1</source>
        <translation>：可由以下之一解释：%1</translation>
    </message>
    <message>
        <source>The angular misclosure is %1, where the a-priori errors allow %2</source>
        <translation>角度闭合差为 %1，先验误差允许 %2</translation>
    </message>
    <message>
        <source>The closing error is %1, where the a-priori errors allow %2</source>
        <translation>全长闭合差为 %1，先验误差允许 %2</translation>
    </message>
    <message>
        <source>The misclosure along the traverse is %1, where the a-priori errors allow %2</source>
        <translation>沿导线方向的闭合差为 %1，先验误差允许 %2</translation>
    </message>
    <message>
        <source>The misclosure across the traverse is %1, where the a-priori errors allow %2</source>
        <translation>垂直于导线方向的闭合差为 %1，先验误差允许 %2</translation>
    </message>
    <message>
        <source>The angular misclosure is %1, beyond the limit of %2</source>
        <translation>角度闭合差为 %1，超过限差 %2</translation>
    </message>
    <message>
        <source>The relative misclosure is 1 : %1, beyond the limit of 1 : %2</source>
        <translation>相对闭合差为 1 : %1，超过限差 1 : %2</translation>
    </message>
    <message>
        <source>no height from a sight before the first station</source>
        <translation>第一个测站之前的观测不能得出高程</translation>
    </message>
    <message>
        <source>no height from a sight to the station itself</source>
        <translation>照准测站自身的观测不能得出高程</translation>
    </message>
    <message>
        <source>no height from a sight without a vertical reading within the circle</source>
        <translation>没有度盘范围内的竖盘读数的观测不能得出高程</translation>
    </message>
    <message>
        <source>no height from a sight without a distance</source>
        <translation>没有距离的观测不能得出高程</translation>
    </message>
    <message>
        <source>no height from a sight straight up or down, or without a vertical reading</source>
        <translation>铅垂方向的观测或没有竖盘读数的观测不能得出高程</translation>
    </message>
    <message>
        <source>The known height of %1 is 0</source>
        <translation>%1 的已知高程为 0</translation>
    </message>
    <message>
        <source>no line connects these points to a known height: %1</source>
        <translation>这些点没有观测边与已知高程相连：%1</translation>
    </message>
    <message>
        <source>no station has a known height</source>
        <translation>没有已知高程的测站</translation>
    </message>
    <message>
        <source>no sight gives a height difference</source>
        <translation>没有能得出高差的观测</translation>
    </message>
    <message>
        <source>the file has no rows of a field book, from which heights are computed</source>
        <translation>文件中没有可用于计算高程的外业观测数据</translation>
    </message>
    <message>
        <source>every known height is 0</source>
        <translation>所有已知高程均为 0</translation>
    </message>
    <message>
        <source>No heights: %1</source>
        <translation>没有高程：%1</translation>
    </message>
    <message>
        <source>No heights are adjusted: %1</source>
        <translation>未进行高程平差：%1</translation>
    </message>
    <message>
        <source>%1 of %2 coordinates have no height: 0 stands in its place</source>
        <translation>%2 个坐标中有 %1 个没有高程，以 0 代替</translation>
    </message>
    <message>
        <source>%1 mm too small</source>
        <translation>偏小 %1 毫米</translation>
    </message>
    <message>
        <source>%1 mm too large</source>
        <translation>偏大 %1 毫米</translation>
    </message>
    <message>
        <source>the height differences of two set-ups differ by %1 mm</source>
        <translation>两次设站的高差相差 %1 毫米</translation>
    </message>
    <message>
        <source>the height differences of both ends differ by %1 mm</source>
        <translation>对向观测的高差相差 %1 毫米</translation>
    </message>
    <message>
        <source>the height differences by two target heights differ by %1 mm</source>
        <translation>两种目标高所得的高差相差 %1 毫米</translation>
    </message>
    <message>
        <source>the heights of the instrument in two set-ups, %1 m and %2 m, do not agree: by their common targets one of them is off by %3 mm</source>
        <translation>两次设站的仪器高 %1 米和 %2 米不相符：由共同目标判断，其中之一有 %3 毫米的误差</translation>
    </message>
    <message>
        <source>the heights of the instrument in two set-ups, %1 m and %2 m, differ by little: one of them may be mistyped</source>
        <translation>两次设站的仪器高 %1 米和 %2 米相差很小：其中之一可能输入有误</translation>
    </message>
    <message>
        <source>the heights of the instrument in two set-ups are %1 m and %2 m, and no common target compares them</source>
        <translation>两次设站的仪器高为 %1 米和 %2 米，没有可供比较的共同目标</translation>
    </message>
    <message>
        <source>The unit weight error of the heights is far above 1: a gross error, or known heights that do not fit</source>
        <translation>高程的单位权中误差远大于 1：存在粗差，或已知高程不相符</translation>
    </message>
    <message>
        <source>suspected gross error of the height difference: %1</source>
        <translation>高差疑有粗差：%1</translation>
    </message>
    <message>
        <source>the height of the instrument seems to be %1</source>
        <translation>仪器高似乎%1</translation>
    </message>
    <message>
        <source>the height of the target (%2 m) seems to be %1</source>
        <translation>目标高（%2 米）似乎%1</translation>
    </message>
    <message>
        <source>the known height does not fit: it seems to be %1</source>
        <translation>已知高程不相符：似乎%1</translation>
    </message>
    <message>
        <source>the height difference cannot be told apart from a suspected height</source>
        <translation>该高差与可疑的高程量无法区分</translation>
    </message>
    <message>
        <source>the height of the instrument cannot be told apart from a suspected height</source>
        <translation>该仪器高与可疑的高程量无法区分</translation>
    </message>
    <message>
        <source>the height of the target (%1 m) cannot be told apart from a suspected height</source>
        <translation>该目标高（%1 米）与可疑的高程量无法区分</translation>
    </message>
    <message>
        <source>the known height cannot be told apart from a suspected height</source>
        <translation>该已知高程与可疑的高程量无法区分</translation>
    </message>
    <message>
        <source>nothing checks the height of the instrument</source>
        <translation>仪器高没有检核</translation>
    </message>
    <message>
        <source>nothing checks the height of the point</source>
        <translation>该点的高程没有检核</translation>
    </message>
    <message>
        <source>the distances to the target differ by %1 mm, more than their errors allow</source>
        <translation>到该目标的距离相差 %1 毫米，超出其误差所允许的范围</translation>
    </message>
    <message>
        <source>observed on one face only: collimation and index errors stay in all of its readings</source>
        <translation>仅用一个盘位观测：照准差和指标差留在其全部读数中</translation>
    </message>
    <message>
        <source>the side shot misses the known point by %1, where the a-priori errors allow %2</source>
        <translation>支点观测与已知点相差 %1，先验误差允许 %2</translation>
    </message>
    <message>
        <source>Points that are drawn as dots, without name and ellipse: %1. Lines that lead to no row: %2.</source>
        <translation>仅绘为圆点、不带点名与椭圆的点：%1 个。不指向表格的线：%2 条。</translation>
    </message>
    <message>
        <source>Adjusted to the letter of the file, without tests: unit weight error %1, expected 1.</source>
        <translation>按文件字面内容平差，未作检验：单位权中误差 %1，期望值为 1。</translation>
    </message>
    <message>
        <source>Adjusted</source>
        <translation>平差值</translation>
    </message>
    <message>
        <source>No single observation and no point stands out.</source>
        <translation>没有突出的观测值或点。</translation>
    </message>
    <message>
        <source>fails its test</source>
        <translation>未通过检验</translation>
    </message>
    <message>
        <source>none: nothing is redundant</source>
        <translation>无：没有多余观测</translation>
    </message>
    <message>
        <source>Nothing was tested.</source>
        <translation>没有进行检验。</translation>
    </message>
    <message>
        <source>the approximate coordinates are more than 1 m from its own, which count</source>
        <translation>近似坐标与其自身坐标相差超过 1 m，以其自身坐标为准</translation>
    </message>
    <message>
        <source>The adjustment does not settle when suspects are left out: its results are those with all</source>
        <translation>剔除可疑观测值时平差不收敛：结果为保留全部观测值的结果</translation>
    </message>
    <message>
        <source>The adjustment does not settle with robust weights: its results are those without them</source>
        <translation>采用稳健权时平差不收敛：结果为不采用稳健权的结果</translation>
    </message>
    <message>
        <source>the known height is 0</source>
        <translation>已知高程为 0</translation>
    </message>
    <message>
        <source>A side shot misses a known point by more than the a-priori errors allow.</source>
        <translation>支点观测与已知点之差超过先验误差允许值。</translation>
    </message>
    <message>
        <source>The adjustment does not settle with all observations: %1 of %2 have no weight.</source>
        <translation>采用全部观测值时平差不收敛：%2 个观测值中有 %1 个不计权。</translation>
    </message>
    <message>
        <source>the known point does not fit the free network: its place is %1 m off</source>
        <translation>已知点与自由网不符：位置相差 %1 m</translation>
    </message>
    <message>
        <source>The misclosures are not judged: %1</source>
        <translation>未对闭合差进行评定：%1</translation>
    </message>
    <message>
        <source>the shot puts the point %1 from its other position, which stays; the a-priori errors allow %2</source>
        <translation>该碎部点位置与其另一位置（予以保留）相差 %1，先验误差允许 %2</translation>
    </message>
    <message>
        <source>No single observation is named: see the sentence at the top.</source>
        <translation>没有指出单个观测值：见页首的结论。</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>放大</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>缩小</translation>
    </message>
    <message>
        <source>Instrument</source>
        <translation>仪器</translation>
    </message>
    <message>
        <source>there is no method of adjustment of the number %1</source>
        <translation>没有编号为 %1 的平差方法</translation>
    </message>
    <message>
        <source>from %1 several ways lead on: no single traverse, but least squares adjusts it</source>
        <translation>从 %1 出发有多条路线：不是单一导线，可用最小二乘法平差</translation>
    </message>
    <message>
        <source>two sights of %1 have the same direction</source>
        <translation>%1 的两次照准方向相同</translation>
    </message>
    <message>
        <source>no traverse: no known station sights another known point and a point to go on to</source>
        <translation>没有导线：没有已知测站同时照准另一已知点和下一导线点</translation>
    </message>
    <message>
        <source>a coordinate file has no observations to adjust</source>
        <translation>坐标文件中没有可供平差的观测值</translation>
    </message>
    <message>
        <source>the a-priori error of a direction (in a network file the first number of line 1) must be a number above 0</source>
        <translation>方向的先验中误差（控制网文件中为第 1 行第一个数）必须是大于 0 的数</translation>
    </message>
    <message>
        <source>the a-priori errors of a distance (in a network file the second and third number of line 1) must be numbers of 0 or more</source>
        <translation>边长的先验中误差（控制网文件中为第 1 行第二、三个数）必须是不小于 0 的数</translation>
    </message>
    <message>
        <source>the a-priori errors of a distance are both 0</source>
        <translation>边长的两项先验中误差均为 0</translation>
    </message>
    <message>
        <source> (and %1 more)</source>
        <translation>（另有 %1 项）</translation>
    </message>
    <message>
        <source>%1 to %2</source>
        <translation>%1 至 %2</translation>
    </message>
    <message>
        <source>row %1</source>
        <translation>第 %1 条记录</translation>
    </message>
    <message>
        <source>; and %1 more of this kind</source>
        <translation>；另有 %1 处同类情况</translation>
    </message>
    <message>
        <source>Calculate failed</source>
        <translation>计算失败</translation>
    </message>
    <message>
        <source>No start data</source>
        <translation>没有起算数据</translation>
    </message>
    <message>
        <source>No enough data</source>
        <translation>数据不足</translation>
    </message>
    <message>
        <source>%1: item %2</source>
        <translation>%1：第 %2 项</translation>
    </message>
    <message>
        <source>%1: line from %2 to %3</source>
        <translation>%1：%2 至 %3 的边</translation>
    </message>
    <message>
        <source>line %1: the observation from %2 to %3 has no value; see kelvane plan</source>
        <translation>第 %1 行：%2 至 %3 的观测值没有数值；参见 kelvane plan</translation>
    </message>
    <message>
        <source>Nothing checks: %1</source>
        <translation>没有检核：%1</translation>
    </message>
    <message>
        <source>there are no observations to adjust</source>
        <translation>没有可供平差的观测值</translation>
    </message>
    <message>
        <source>%1 of %2 observations are given more than once from a station; the first ones count: %3</source>
        <translation>%2 个观测值中有 %1 个在同一测站重复给出；以最先给出的为准：%3</translation>
    </message>
    <message>
        <source>%1 of %2 observations are given more than once from a station and count once, by their mean: %3</source>
        <translation>%2 个观测值中有 %1 个在同一测站重复给出；取其平均值，只计一次：%3</translation>
    </message>
    <message>
        <source>the file is empty</source>
        <translation>文件为空</translation>
    </message>
    <message>
        <source>line %1 is no text in the encoding %2</source>
        <translation>第 %1 行不是编码 %2 的文本</translation>
    </message>
    <message>
        <source>unknown kind of file; what can be read: .in2 (COSA network), .txt (traverse file), .lqf (instrument job), .dat (coordinates), .kvn (project)</source>
        <translation>未知的文件类型；可读取：.in2（COSA 控制网）、.txt（导线文件）、.lqf（仪器作业）、.dat（坐标）、.kvn（项目）</translation>
    </message>
    <message>
        <source>the centring error must be from 0 to 1 m</source>
        <translation>对中误差必须在 0 至 1 m 之间</translation>
    </message>
    <message>
        <source>the error of known coordinates must be from 0 to 100 m</source>
        <translation>已知坐标的误差必须在 0 至 100 m 之间</translation>
    </message>
    <message>
        <source>the confidence must be from 0.5 to 0.9999</source>
        <translation>置信水平必须在 0.5 至 0.9999 之间</translation>
    </message>
    <message>
        <source>suspects are left out or weighed down, not both</source>
        <translation>可疑观测值只能剔除或降权，不能兼用</translation>
    </message>
    <message>
        <source>the limits of misclosures must be 0 or more</source>
        <translation>闭合差限差必须不小于 0</translation>
    </message>
    <message>
        <source>the error of a zenith angle must be above 0 and up to 10000 seconds</source>
        <translation>天顶距中误差必须大于 0 且不超过 10000 秒</translation>
    </message>
    <message>
        <source>the error of a height of instrument or target must be from 0 to 1 m</source>
        <translation>仪器高或目标高的误差必须在 0 至 1 m 之间</translation>
    </message>
    <message>
        <source>the refraction must be from -10 to 10</source>
        <translation>折光系数必须在 -10 至 10 之间</translation>
    </message>
    <message>
        <source>the error of the refraction must be from 0 to 10</source>
        <translation>折光系数的误差必须在 0 至 10 之间</translation>
    </message>
    <message>
        <source>unknown kind of file; what can be written: %1</source>
        <translation>未知的文件类型；可写入：%1</translation>
    </message>
    <message>
        <source>the coordinates of %1 are no numbers</source>
        <translation>%1 的坐标不是数</translation>
    </message>
    <message>
        <source>%1 is given twice, in different places</source>
        <translation>%1 给出两次，位置不同</translation>
    </message>
    <message>
        <source>approximate coordinates are read from a coordinate file (.dat)</source>
        <translation>近似坐标须从坐标文件（.dat）读取</translation>
    </message>
    <message>
        <source>Known points whose approximate coordinates are more than 1 m from their own, which count: %1</source>
        <translation>近似坐标与自身坐标相差超过 1 m 的已知点（以自身坐标为准）：%1</translation>
    </message>
    <message>
        <source>Coordinates of points that the network does not have are ignored: %1 of %2</source>
        <translation>控制网中没有的点，其坐标被忽略：%2 个中的 %1 个</translation>
    </message>
    <message>
        <source>the name "%1" cannot stand in a file of this kind</source>
        <translation>点名“%1”不能写入此类文件</translation>
    </message>
    <message>
        <source>a number of %1 is not finite</source>
        <translation>%1 的一个数值不是有限数</translation>
    </message>
    <message>
        <source>A project file has no place for point codes</source>
        <translation>项目文件不能保存点的编码</translation>
    </message>
    <message>
        <source>A traverse file has no place for point codes</source>
        <translation>导线文件不能保存点的编码</translation>
    </message>
    <message>
        <source>A traverse file holds heights of instrument and target of 100 m and above to six digits only</source>
        <translation>导线文件中 100 m 及以上的仪器高和目标高只保留六位数字</translation>
    </message>
    <message>
        <source>The sight to %1 has no angles and is left out</source>
        <translation>对 %1 的照准没有角度，已略去</translation>
    </message>
    <message>
        <source>there is no point with coordinates to write</source>
        <translation>没有可写入的带坐标的点</translation>
    </message>
    <message>
        <source>Only the known points have coordinates to write</source>
        <translation>只有已知点有坐标可写入</translation>
    </message>
    <message>
        <source>there is no network to write</source>
        <translation>没有可写入的控制网</translation>
    </message>
    <message>
        <source>a project file cannot tell that no direction was observed from %1 to %2; a .in2 file can</source>
        <translation>项目文件不能表示 %1 至 %2 未观测方向；.in2 文件可以</translation>
    </message>
    <message>
        <source>A project file keeps one set-up a station: those of %1 are turned onto the first one, and what is observed again counts once; a .in2 file keeps them all</source>
        <translation>项目文件对每个测站只保存一次设站：%1 的各次设站已归算到第一次，重复观测只计一次；.in2 文件可以全部保存</translation>
    </message>
    <message>
        <source>A project file does not keep these options, without which the numbers are others: %1</source>
        <translation>项目文件不保存下列选项，缺少它们结果会不同：%1</translation>
    </message>
    <message>
        <source>errors of distances as the root of both parts</source>
        <translation>距离误差取两部分平方和的根</translation>
    </message>
    <message>
        <source>centring %1 mm</source>
        <translation>对中误差 %1 mm</translation>
    </message>
    <message>
        <source>errors of known coordinates %1 mm</source>
        <translation>已知坐标误差 %1 mm</translation>
    </message>
    <message>
        <source>a free network</source>
        <translation>自由网</translation>
    </message>
    <message>
        <source>errors and tests by the a-priori unit weight error</source>
        <translation>按先验单位权中误差计算误差和检验</translation>
    </message>
    <message>
        <source>confidence %1</source>
        <translation>置信度 %1</translation>
    </message>
    <message>
        <source>suspects left out</source>
        <translation>剔除可疑观测值</translation>
    </message>
    <message>
        <source>suspects weighed down</source>
        <translation>降低可疑观测值的权</translation>
    </message>
    <message>
        <source>limit of an angle %1&quot;</source>
        <translation>角度限差 %1"</translation>
    </message>
    <message>
        <source>limit of the closing error 1:%1</source>
        <translation>闭合差限差 1:%1</translation>
    </message>
    <message>
        <source>a traverse computed whatever it misses by</source>
        <translation>不论闭合差多大都计算导线</translation>
    </message>
    <message>
        <source>errors of zenith angles %1&quot;</source>
        <translation>天顶距误差 %1"</translation>
    </message>
    <message>
        <source>errors of heights of instrument and target %1 mm</source>
        <translation>仪器高和目标高误差 %1 mm</translation>
    </message>
    <message>
        <source>refraction %1</source>
        <translation>折光系数 %1</translation>
    </message>
    <message>
        <source>error of the refraction %1</source>
        <translation>折光系数误差 %1</translation>
    </message>
    <message>
        <source>%1 approximate coordinates</source>
        <translation>%1 个近似坐标</translation>
    </message>
    <message>
        <source>a project file keeps one set-up a station, and those of %1 cannot be one (%2); a .in2 file keeps them all</source>
        <translation>项目文件中每个测站只有一次设站，%1 的各次设站无法合并（%2）；.in2 文件可全部保留</translation>
    </message>
    <message>
        <source>a file of this kind holds the readings of a field book, which there are none of</source>
        <translation>此类文件保存外业读数，而此处没有</translation>
    </message>
    <message>
        <source>the attribute %1 is %2: %3</source>
        <translation>属性 %1 %2：%3</translation>
    </message>
    <message>
        <source>no number</source>
        <translation>不是数</translation>
    </message>
    <message>
        <source>not finite</source>
        <translation>不是有限数</translation>
    </message>
    <message>
        <source>neither true nor false</source>
        <translation>既不是 true 也不是 false</translation>
    </message>
    <message>
        <source>the version %1 is not known</source>
        <translation>版本 %1 未知</translation>
    </message>
    <message>
        <source>the kind of data %1 is not known</source>
        <translation>数据类型 %1 未知</translation>
    </message>
    <message>
        <source>no kind of row</source>
        <translation>不是记录类型</translation>
    </message>
    <message>
        <source>line %1: an element has more than %2 attributes</source>
        <translation>第 %1 行：一个元素的属性超过 %2 个</translation>
    </message>
    <message>
        <source>line %1: the file is not well-formed XML</source>
        <translation>第 %1 行：文件不是格式正确的 XML</translation>
    </message>
    <message>
        <source>the file is no project file</source>
        <translation>该文件不是项目文件</translation>
    </message>
    <message>
        <source>a station has two different directions, back and forward</source>
        <translation>测站应有后视和前视两个不同的方向</translation>
    </message>
    <message>
        <source>a station has just two different directions, back and forward</source>
        <translation>测站应恰有后视和前视两个不同的方向</translation>
    </message>
    <message>
        <source>a station has just two directions, back and forward</source>
        <translation>测站应恰有后视和前视两个方向</translation>
    </message>
    <message>
        <source>no known station has a known back point, its smaller reading</source>
        <translation>没有已知测站以已知点为后视（读数较小者）</translation>
    </message>
    <message>
        <source>no station is known</source>
        <translation>没有已知测站</translation>
    </message>
    <message>
        <source>exactly one known station of the polygon has a known back point, its smaller reading</source>
        <translation>闭合导线中应恰有一个已知测站以已知点为后视（读数较小者）</translation>
    </message>
    <message>
        <source>the last station is known, and looks forward to the first</source>
        <translation>最后一个测站应为已知点，并前视第一个测站</translation>
    </message>
    <message>
        <source>the stations make no single chain from back to fore points, the smaller and the larger readings</source>
        <translation>各测站按后视点至前视点（读数较小者至较大者）不能连成单一导线</translation>
    </message>
    <message>
        <source>the chain comes to a station a second time</source>
        <translation>导线再次经过同一测站</translation>
    </message>
    <message>
        <source>not an angle, or two known points at one place</source>
        <translation>不是角度，或两个已知点位置相同</translation>
    </message>
    <message>
        <source>%1: the traverse ends at %2 and looks forward to %3, which both have to be known</source>
        <translation>%1：导线止于 %2 并前视 %3，两点都必须是已知点</translation>
    </message>
    <message>
        <source>- (nothing is redundant)</source>
        <translation>-（没有多余观测）</translation>
    </message>
    <message>
        <source>%1, expected between %2 and %3 at %4</source>
        <translation>%1，在置信水平 %4 下应介于 %2 与 %3 之间</translation>
    </message>
    <message>
        <source>%1: fails</source>
        <translation>%1：未通过</translation>
    </message>
    <message>
        <source>Trigonometric heights of %1</source>
        <translation>%1 的三角高程</translation>
    </message>
    <message>
        <source>%1, %2 of them known</source>
        <translation>%1，其中已知 %2</translation>
    </message>
    <message>
        <source>%1 from %2</source>
        <translation>%1，来自 %2</translation>
    </message>
    <message>
        <source>%1 set-up</source>
        <translation>%1 次设站</translation>
    </message>
    <message>
        <source>%1 set-ups</source>
        <translation>%1 次设站</translation>
    </message>
    <message>
        <source>Height [m]</source>
        <translation>高程 [m]</translation>
    </message>
    <message>
        <source>Distance [m]</source>
        <translation>距离 [m]</translation>
    </message>
    <message>
        <source>Difference [m]</source>
        <translation>高差 [m]</translation>
    </message>
    <message>
        <source>Sights (σ a-priori error, v residual, r redundancy, w standardised residual, * too large)</source>
        <translation>照准（σ 先验中误差，v 残差，r 多余观测分量，w 标准化残差，* 过大）</translation>
    </message>
    <message>
        <source>Too large by [mm]</source>
        <translation>偏大 [mm]</translation>
    </message>
    <message>
        <source>... (%1 points)</source>
        <translation>…（%1 个点）</translation>
    </message>
    <message>
        <source>Misclosure [mm]</source>
        <translation>闭合差 [mm]</translation>
    </message>
    <message>
        <source>Allowed [mm]</source>
        <translation>允许值 [mm]</translation>
    </message>
    <message>
        <source>Loops that do not close (allowed: 99 %)</source>
        <translation>不闭合的环（允许值：99 %）</translation>
    </message>
    <message>
        <source>Open traverse of %1</source>
        <translation>%1 的支导线</translation>
    </message>
    <message>
        <source>Connecting traverse of %1</source>
        <translation>%1 的附合导线</translation>
    </message>
    <message>
        <source>Closed traverse of %1</source>
        <translation>%1 的闭合导线</translation>
    </message>
    <message>
        <source>Legs</source>
        <translation>边</translation>
    </message>
    <message>
        <source>Unit weight error of heights</source>
        <translation>高程单位权中误差</translation>
    </message>
    <message>
        <source>North x [m]</source>
        <translation>北 x [m]</translation>
    </message>
    <message>
        <source>East y [m]</source>
        <translation>东 y [m]</translation>
    </message>
    <message>
        <source>Traverse (v correction; azimuth and leg to the next point)</source>
        <translation>导线（v 改正数；方位角与边指向下一点）</translation>
    </message>
    <message>
        <source>Traverse (azimuth and leg to the next point)</source>
        <translation>导线（方位角与边指向下一点）</translation>
    </message>
    <message>
        <source>%1, each angle corrected by %2</source>
        <translation>%1，每个角改正 %2</translation>
    </message>
    <message>
        <source>Angles</source>
        <translation>角度</translation>
    </message>
    <message>
        <source>Sum of legs</source>
        <translation>边长总和</translation>
    </message>
    <message>
        <source>has</source>
        <translation>实际值</translation>
    </message>
    <message>
        <source>allowed</source>
        <translation>允许值</translation>
    </message>
    <message>
        <source>angles [″]</source>
        <translation>角度 [″]</translation>
    </message>
    <message>
        <source>along [mm]</source>
        <translation>纵向 [mm]</translation>
    </message>
    <message>
        <source>across [mm]</source>
        <translation>横向 [mm]</translation>
    </message>
    <message>
        <source>angles [″], limit</source>
        <translation>角度 [″]，限差</translation>
    </message>
    <message>
        <source>relative, limit</source>
        <translation>相对，限差</translation>
    </message>
    <message>
        <source>Misclosures and what the a-priori errors allow (99 %)</source>
        <translation>闭合差及先验中误差的允许值（99 %）</translation>
    </message>
    <message>
        <source>known, off by %1 mm</source>
        <translation>已知，相差 %1 mm</translation>
    </message>
    <message>
        <source>Side shots (nothing checks them, unless known; errors by the a-priori errors)</source>
        <translation>支点（除已知点外没有检核；误差按先验中误差计算）</translation>
    </message>
    <message>
        <source>what a file holds</source>
        <translation>文件的内容</translation>
    </message>
    <message>
        <source>what is wrong with a file, or should not be trusted</source>
        <translation>文件中的错误和可疑之处</translation>
    </message>
    <message>
        <source>adjusted coordinates with their errors</source>
        <translation>平差坐标及其中误差</translation>
    </message>
    <message>
        <source>the same as a page with map and tables, to print and to hand over</source>
        <translation>同上，生成带图和表的网页，可打印和提交</translation>
    </message>
    <message>
        <source>how good the network will be, before it is measured</source>
        <translation>测量前预估控制网的精度</translation>
    </message>
    <message>
        <source>trigonometric heights with their errors</source>
        <translation>三角高程及其中误差</translation>
    </message>
    <message>
        <source>the same job in another format</source>
        <translation>把作业转换为另一种格式</translation>
    </message>
    <message>
        <source>a picture of the map, with error ellipses</source>
        <translation>带误差椭圆的网图</translation>
    </message>
    <message>
        <source>run the JSON commands of standard input</source>
        <translation>执行标准输入中的 JSON 命令</translation>
    </message>
    <message>
        <source>all options of a subcommand</source>
        <translation>子命令的全部选项</translation>
    </message>
    <message>
        <source>print JSON instead of tables</source>
        <translation>输出 JSON 而不是表格</translation>
    </message>
    <message>
        <source>language of the texts</source>
        <translation>文字的语言</translation>
    </message>
    <message>
        <source>Usage: kelvane %1</source>
        <translation>用法：kelvane %1</translation>
    </message>
    <message>
        <source>Field data of total stations to adjusted coordinates.</source>
        <translation>由全站仪外业数据计算平差坐标。</translation>
    </message>
    <message>
        <source>Subcommands:</source>
        <translation>子命令：</translation>
    </message>
    <message>
        <source>Options of all subcommands:</source>
        <translation>所有子命令的选项：</translation>
    </message>
    <message>
        <source>(unchecked)</source>
        <translation>（无检核）</translation>
    </message>
    <message>
        <source>%1, expected between %2 and %3</source>
        <translation>%1，应介于 %2 与 %3 之间</translation>
    </message>
    <message>
        <source>not enough memory</source>
        <translation>内存不足</translation>
    </message>
    <message>
        <source>unknown encoding: %1</source>
        <translation>未知的编码：%1</translation>
    </message>
    <message>
        <source>not an 8-bit encoding: %1</source>
        <translation>不是 8 位编码：%1</translation>
    </message>
    <message>
        <source> (and %1 more; kelvane check tells all)</source>
        <translation>（另有 %1 项；kelvane check 列出全部）</translation>
    </message>
    <message>
        <source>To look at first</source>
        <translation>请先查看</translation>
    </message>
    <message>
        <source>Adjusting %1 sights: %2</source>
        <translation>正在平差 %1 个照准：%2</translation>
    </message>
    <message>
        <source>approximate coordinates</source>
        <translation>近似坐标</translation>
    </message>
    <message>
        <source>inverse</source>
        <translation>求逆</translation>
    </message>
    <message>
        <source>errors of the results</source>
        <translation>结果的误差</translation>
    </message>
    <message>
        <source>search for gross errors</source>
        <translation>搜索粗差</translation>
    </message>
    <message>
        <source>round %1</source>
        <translation>第 %1 次迭代</translation>
    </message>
    <message>
        <source>, largest move %1 m</source>
        <translation>，最大移动 %1 m</translation>
    </message>
    <message>
        <source>%1 holds the observations, not the adjusted coordinates</source>
        <translation>%1 保存的是观测值，而不是平差坐标</translation>
    </message>
    <message>
        <source>%1 mm for a line of 1 km</source>
        <translation>每公里 %1 mm</translation>
    </message>
    <message>
        <source>- (nothing is redundant, so there are no errors)</source>
        <translation>-（没有多余观测，因而没有中误差）</translation>
    </message>
    <message>
        <source>Lines</source>
        <translation>边</translation>
    </message>
    <message>
        <source>Lines (v residual)</source>
        <translation>边（v 残差）</translation>
    </message>
    <message>
        <source>The plane cannot be adjusted: %1</source>
        <translation>平面无法平差：%1</translation>
    </message>
    <message>
        <source>the job cannot be computed as it stands</source>
        <translation>该作业目前无法计算</translation>
    </message>
    <message>
        <source>the row checks mark %1 row</source>
        <translation>记录检查标出 %1 条记录</translation>
    </message>
    <message>
        <source>the row checks mark %1 rows</source>
        <translation>记录检查标出 %1 条记录</translation>
    </message>
    <message>
        <source>Nothing found.</source>
        <translation>没有发现问题。</translation>
    </message>
    <message>
        <source>Options:</source>
        <translation>选项：</translation>
    </message>
    <message>
        <source>Arguments:</source>
        <translation>参数：</translation>
    </message>
    <message>
        <source>Unknown option '%1'</source>
        <translation>未知的选项“%1”</translation>
    </message>
    <message>
        <source>; did you mean %1?</source>
        <translation>；是否指 %1？</translation>
    </message>
    <message>
        <source>instrument job file</source>
        <translation>仪器作业文件</translation>
    </message>
    <message>
        <source>traverse file</source>
        <translation>导线文件</translation>
    </message>
    <message>
        <source>COSA network file</source>
        <translation>COSA 控制网文件</translation>
    </message>
    <message>
        <source>coordinate file</source>
        <translation>坐标文件</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>名称</translation>
    </message>
    <message>
        <source>Rows</source>
        <translation>记录</translation>
    </message>
    <message>
        <source>North [m]</source>
        <translation>北 [m]</translation>
    </message>
    <message>
        <source>East [m]</source>
        <translation>东 [m]</translation>
    </message>
    <message>
        <source>Direction</source>
        <translation>方向</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>类型</translation>
    </message>
    <message>
        <source>Horizontal</source>
        <translation>水平角</translation>
    </message>
    <message>
        <source>Vertical</source>
        <translation>竖直角</translation>
    </message>
    <message>
        <source>Slant [m]</source>
        <translation>斜距 [m]</translation>
    </message>
    <message>
        <source>Up [m]</source>
        <translation>高程 [m]</translation>
    </message>
    <message>
        <source>Code</source>
        <translation>编码</translation>
    </message>
    <message>
        <source>Mark</source>
        <translation>标记</translation>
    </message>
    <message>
        <source>Plan of %1</source>
        <translation>%1 的设计</translation>
    </message>
    <message>
        <source>Error [″]</source>
        <translation>中误差 [″]</translation>
    </message>
    <message>
        <source>Detectable [″]</source>
        <translation>可发现 [″]</translation>
    </message>
    <message>
        <source>Effect [mm]</source>
        <translation>影响 [mm]</translation>
    </message>
    <message>
        <source>Directions (r redundancy, detectable the smallest gross error that a test finds, effect of it on a coordinate, m error after adjustment)</source>
        <translation>方向（r 多余观测分量，可发现：检验可发现的最小粗差，影响：该粗差对坐标的影响，m 平差后中误差）</translation>
    </message>
    <message>
        <source>Error [mm]</source>
        <translation>中误差 [mm]</translation>
    </message>
    <message>
        <source>Detectable [mm]</source>
        <translation>可发现 [mm]</translation>
    </message>
    <message>
        <source>%1 (expected 1)</source>
        <translation>%1（期望值 1）</translation>
    </message>
    <message>
        <source>Least-squares adjustment of %1</source>
        <translation>%1 的最小二乘平差</translation>
    </message>
    <message>
        <source>%1 from %2, %3</source>
        <translation>%1（%2），%3</translation>
    </message>
    <message>
        <source>%1 direction</source>
        <translation>%1 个方向</translation>
    </message>
    <message>
        <source>%1 directions</source>
        <translation>%1 个方向</translation>
    </message>
    <message>
        <source>%1 station</source>
        <translation>%1 个测站</translation>
    </message>
    <message>
        <source>%1 stations</source>
        <translation>%1 个测站</translation>
    </message>
    <message>
        <source>%1 distance</source>
        <translation>%1 条边长</translation>
    </message>
    <message>
        <source>%1 distances</source>
        <translation>%1 条边长</translation>
    </message>
    <message>
        <source>Major [mm]</source>
        <translation>长半轴 [mm]</translation>
    </message>
    <message>
        <source>Minor [mm]</source>
        <translation>短半轴 [mm]</translation>
    </message>
    <message>
        <source>Error ellipses (semi-axes)</source>
        <translation>误差椭圆（半轴）</translation>
    </message>
    <message>
        <source>Directions (v residual, m standard error after adjustment)</source>
        <translation>方向（v 残差，m 平差后中误差）</translation>
    </message>
    <message>
        <source>Observed [m]</source>
        <translation>观测值 [m]</translation>
    </message>
    <message>
        <source>Adjusted [m]</source>
        <translation>平差值 [m]</translation>
    </message>
    <message>
        <source>Note: %1</source>
        <translation>提示：%1</translation>
    </message>
    <message>
        <source>Warning: %1</source>
        <translation>警告：%1</translation>
    </message>
    <message>
        <source>Error: %1</source>
        <translation>错误：%1</translation>
    </message>
    <message>
        <source> and %1 more</source>
        <translation> 等，另有 %1 个</translation>
    </message>
    <message>
        <source>Not drawn, since they have no usable coordinates: %1</source>
        <translation>没有可用坐标而未绘出：%1</translation>
    </message>
    <message>
        <source>The icon %1 cannot be read: points show by their names alone</source>
        <translation>无法读取图标 %1：点只显示名称</translation>
    </message>
    <message>
        <source>Not adjusted, so that there are no error ellipses: %1</source>
        <translation>未平差，因而没有误差椭圆：%1</translation>
    </message>
    <message>
        <source>the map was not drawn</source>
        <translation>网图未绘出</translation>
    </message>
    <message>
        <source>there is no point with coordinates to draw</source>
        <translation>没有可绘出的带坐标的点</translation>
    </message>
    <message>
        <source>%1: %2 points, %3 lines</source>
        <translation>%1：%2 个点，%3 条边</translation>
    </message>
    <message>
        <source>free: laid on the known points, none of which is held</source>
        <translation>自由：以全部已知点为准，不固定任何一点</translation>
    </message>
    <message>
        <source>free: laid on all points</source>
        <translation>自由：以全部点为准</translation>
    </message>
    <message>
        <source>%1 from %2 of %3, %4</source>
        <translation>%1（%3，%2），%4</translation>
    </message>
    <message>
        <source>all observations have their full weight</source>
        <translation>全部观测值均为全权</translation>
    </message>
    <message>
        <source>%1 observation weighs less</source>
        <translation>%1 个观测值降权</translation>
    </message>
    <message>
        <source>%1 observations weigh less</source>
        <translation>%1 个观测值降权</translation>
    </message>
    <message>
        <source>, %1 of them nothing: not counted in the redundancy</source>
        <translation>，其中 %1 个权为零：不计入多余观测数</translation>
    </message>
    <message>
        <source>, distances %1</source>
        <translation>，边长 %1</translation>
    </message>
    <message>
        <source>Major %1 [mm]</source>
        <translation>长半轴 %1 [mm]</translation>
    </message>
    <message>
        <source>Minor %1 [mm]</source>
        <translation>短半轴 %1 [mm]</translation>
    </message>
    <message>
        <source>Weight</source>
        <translation>权</translation>
    </message>
    <message>
        <source>Directions (v residual, r redundancy, w standardised residual, * too large, m error after adjustment)</source>
        <translation>方向（v 残差，r 多余观测分量，w 标准化残差，* 过大，m 平差后中误差）</translation>
    </message>
    <message>
        <source>North [mm]</source>
        <translation>北 [mm]</translation>
    </message>
    <message>
        <source>v north [mm]</source>
        <translation>v 北 [mm]</translation>
    </message>
    <message>
        <source>East [mm]</source>
        <translation>东 [mm]</translation>
    </message>
    <message>
        <source>v east [mm]</source>
        <translation>v 东 [mm]</translation>
    </message>
    <message>
        <source>test</source>
        <translation>检验</translation>
    </message>
    <message>
        <source>Known points (shifts from their given coordinates)</source>
        <translation>已知点（相对给定坐标的位移）</translation>
    </message>
    <message>
        <source>Known points (v adjusted minus given, test of both coordinates: * above 1, too large)</source>
        <translation>已知点（v 平差值减给定值，两坐标的检验：* 大于 1，过大）</translation>
    </message>
    <message>
        <source>directions [″]</source>
        <translation>方向 [″]</translation>
    </message>
    <message>
        <source>distances [mm]</source>
        <translation>边长 [mm]</translation>
    </message>
    <message>
        <source>together</source>
        <translation>合计</translation>
    </message>
    <message>
        <source>Scatter between rounds (standard deviation of one round, f its redundancy; no part of the errors above)</source>
        <translation>测回间离散（一测回的标准差，f 其多余观测数；不计入上列中误差）</translation>
    </message>
    <message>
        <source>Moved [mm]</source>
        <translation>移动 [mm]</translation>
    </message>
    <message>
        <source>Left out, in this order (moved: the largest change of a coordinate by it)</source>
        <translation>按此顺序剔除（移动：由此引起的最大坐标变化）</translation>
    </message>
    <message>
        <source>unknown subcommand: %1</source>
        <translation>未知的子命令：%1</translation>
    </message>
    <message>
        <source>%1 (see %2)</source>
        <translation>%1（参见 %2）</translation>
    </message>
    <message>
        <source>Info: %1</source>
        <translation>信息：%1</translation>
    </message>
    <message>
        <source>Traverse file (.txt), instrument job (.lqf), COSA network (.in2), coordinate file (.dat) or project (.kvn).</source>
        <translation>导线文件（.txt）、仪器作业（.lqf）、COSA 控制网（.in2）、坐标文件（.dat）或项目（.kvn）。</translation>
    </message>
    <message>
        <source>Traverse file (.txt), instrument job (.lqf), COSA network (.in2) or project (.kvn).</source>
        <translation>导线文件（.txt）、仪器作业（.lqf）、COSA 控制网（.in2）或项目（.kvn）。</translation>
    </message>
    <message>
        <source>Print this help.</source>
        <translation>显示本帮助。</translation>
    </message>
    <message>
        <source>Print the version.</source>
        <translation>显示版本。</translation>
    </message>
    <message>
        <source>Print one JSON value and nothing else.</source>
        <translation>只输出一个 JSON 值。</translation>
    </message>
    <message>
        <source>Language of the texts: en or zh; that of the locale if not given.</source>
        <translation>文字的语言：en 或 zh；未给出时用系统区域的语言。</translation>
    </message>
    <message>
        <source>FILE is missing</source>
        <translation>缺少 FILE</translation>
    </message>
    <message>
        <source>too many arguments: %1</source>
        <translation>参数过多：%1</translation>
    </message>
    <message>
        <source>--language is en or zh, not %1</source>
        <translation>--language 应为 en 或 zh，而不是 %1</translation>
    </message>
    <message>
        <source>--encoding needs a name</source>
        <translation>--encoding 需要编码名称</translation>
    </message>
    <message>
        <source>--%1 needs a number: %2</source>
        <translation>--%1 需要一个数：%2</translation>
    </message>
    <message>
        <source>--%1 must be %2: %3</source>
        <translation>--%1 必须%2：%3</translation>
    </message>
    <message>
        <source>0 or more</source>
        <translation>不小于 0</translation>
    </message>
    <message>
        <source>above 0</source>
        <translation>大于 0</translation>
    </message>
    <message>
        <source>unknown method: %1</source>
        <translation>未知的方法：%1</translation>
    </message>
    <message>
        <source>--distance-error-form is sum or root, not %1</source>
        <translation>--distance-error-form 应为 sum 或 root，而不是 %1</translation>
    </message>
    <message>
        <source>--%1 goes from %2 to %3: %4</source>
        <translation>--%1 的范围为 %2 至 %3：%4</translation>
    </message>
    <message>
        <source>--sigma0 is a-posteriori or a-priori, not %1</source>
        <translation>--sigma0 应为 a-posteriori 或 a-priori，而不是 %1</translation>
    </message>
    <message>
        <source>--%1 does not go with --as-read</source>
        <translation>--%1 不能与 --as-read 同用</translation>
    </message>
    <message>
        <source>--%1 is for least squares</source>
        <translation>--%1 用于最小二乘平差</translation>
    </message>
    <message>
        <source>--%1 is for a traverse, read with care</source>
        <translation>--%1 用于按严格方式读取的导线</translation>
    </message>
    <message>
        <source>--control-error does not go with --free</source>
        <translation>--control-error 不能与 --free 同用</translation>
    </message>
    <message>
        <source>--robust does not go with --leave-out</source>
        <translation>--robust 不能与 --leave-out 同用</translation>
    </message>
    <message>
        <source>Standard error of a direction in one round on both faces, seconds of arc, above 0.</source>
        <translation>一测回（盘左盘右）方向中误差，单位秒，大于 0。</translation>
    </message>
    <message>
        <source>Fixed part of the standard error of a distance, millimetres.</source>
        <translation>边长中误差的固定部分，单位毫米。</translation>
    </message>
    <message>
        <source>Part of it that grows with the distance, parts per million.</source>
        <translation>边长中误差的比例部分，单位百万分之一。</translation>
    </message>
    <message>
        <source>Standard error of each coordinate of instrument and target about their marks, 0 to 1000.</source>
        <translation>仪器和目标相对标志的每个坐标的对中误差，0 至 1000。</translation>
    </message>
    <message>
        <source>Standard error of each coordinate of a known point, which is an observation then, 0 (the default) to 100000; 0 holds them.</source>
        <translation>已知点每个坐标的中误差，此时坐标作为观测值，0（默认）至 100000；0 表示固定。</translation>
    </message>
    <message>
        <source>Hold no known point: the shifts of them all have no translation and no rotation.</source>
        <translation>不固定已知点：全部已知点的位移之中没有平移和旋转。</translation>
    </message>
    <message>
        <source>Of the test of the whole and of the confidence ellipses, 0.5 to 0.9999 (default 0.95).</source>
        <translation>整体检验和置信椭圆的置信水平，0.5 至 0.9999（默认 0.95）。</translation>
    </message>
    <message>
        <source>Refraction coefficient of heights; 1 takes neither curvature nor refraction (default 0.16).</source>
        <translation>高程的折光系数；1 表示不计地球曲率和折光（默认 0.16）。</translation>
    </message>
    <message>
        <source>Standard error of the refraction coefficient, 0 to 10 (default 0.05).</source>
        <translation>折光系数的中误差，0 至 10（默认 0.05）。</translation>
    </message>
    <message>
        <source>Standard error of a zenith angle, the mean of both faces of one round, above 0 (default: that of a direction).</source>
        <translation>天顶距（一测回盘左盘右平均值）的中误差，大于 0（默认同方向中误差）。</translation>
    </message>
    <message>
        <source>Standard error of each height of instrument and target, 0 to 1000 (default 1).</source>
        <translation>每个仪器高和目标高的中误差，0 至 1000（默认 1）。</translation>
    </message>
    <message>
        <source>--size needs two numbers such as 1200x900: %1</source>
        <translation>--size 需要两个数，如 1200x900：%1</translation>
    </message>
    <message>
        <source>--size goes from %1 to %2 pixels: %3</source>
        <translation>--size 的范围为 %1 至 %2 像素：%3</translation>
    </message>
    <message>
        <source>--dpi is for a .png file</source>
        <translation>--dpi 用于 .png 文件</translation>
    </message>
    <message>
        <source>--%1 needs a file</source>
        <translation>--%1 需要一个文件</translation>
    </message>
    <message>
        <source>How to adjust: least-squares (the default), or one traverse: open, connect or closed, or traverse for all traverses of the file, whatever their kind. By the a-priori errors the misclosures are judged.</source>
        <translation>平差方法：least-squares（最小二乘，默认）；单一导线：open（支导线）、connect（附合导线）或 closed（闭合导线）；traverse 为文件中的全部导线，不论类型。闭合差按先验中误差评定。</translation>
    </message>
    <message>
        <source>How the two parts are joined: sum (the default), or root of the sum of squares. With --as-read for the unit weight error alone, and as the file says by default.</source>
        <translation>两部分的合成方式：sum 相加（默认），或 root 平方和的平方根。与 --as-read 同用时只影响单位权中误差，默认以文件为准。</translation>
    </message>
    <message>
        <source>Leave suspected observations out, one after the other, and tell what each of them moved.</source>
        <translation>逐个剔除可疑观测值，并说明每次剔除引起的移动。</translation>
    </message>
    <message>
        <source>Let observations that do not fit weigh less: fully up to 2.5 standard errors, not at all from 6 on (Yang's IGG III), and tell the weights.</source>
        <translation>对不符的观测值降权：2.5 倍中误差以内为全权，6 倍以上权为零（杨元喜 IGG III 方案），并给出各权。</translation>
    </message>
    <message>
        <source>Coordinate file (.dat) to start from: it decides between two places that agree with the observations, as distances alone leave them, and serves where no search places a point. Without a known point --free lays the network on it.</source>
        <translation>提供近似坐标的坐标文件（.dat）：当两个位置都与观测值相符时（如只有边长）用以判别，也用于自动推算无法定位的点。没有已知点时，--free 以其为准安置控制网。</translation>
    </message>
    <message>
        <source>Unit weight error of the errors and tests: that of the adjustment (the default), or 1.</source>
        <translation>计算中误差和检验所用的单位权中误差：平差所得（默认），或 1。</translation>
    </message>
    <message>
        <source>Limit of the angular misclosure of a traverse, for the root of the number of its angles.</source>
        <translation>导线角度闭合差的限差，按角数的平方根计。</translation>
    </message>
    <message>
        <source>Limit of the relative misclosure of a traverse, 1 : N.</source>
        <translation>导线相对闭合差的限差，1 : N。</translation>
    </message>
    <message>
        <source>Compute a traverse that misses by more than ten times what the a-priori errors allow.</source>
        <translation>闭合差超过先验中误差允许值十倍的导线也照常计算。</translation>
    </message>
    <message>
        <source>Take the file literally, as the library does by default: observations of one line count once, a distance alone is a direction of 0 as well, doubtful lines are taken in silence, distances between known points are left out, a field book is paired by the places of its sights, and a traverse gets distances to both sides as they are.</source>
        <translation>按字面读取文件，即程序库的默认方式：同一条边的观测值只计一次，单独的边长同时视为 0 方向，可疑的行不作提示即采用，已知点间的边长略去，外业记录按照准的位置配对，导线的往返边长按原样采用。</translation>
    </message>
    <message>
        <source>Plane reference system of the coordinates, for .geojson: EPSG and its number, such as EPSG:25832.</source>
        <translation>坐标的平面参考系，用于 .geojson：EPSG 及其编号，如 EPSG:25832。</translation>
    </message>
    <message>
        <source>Begin .csv with a byte order mark, for spreadsheets that take it for another encoding without one.</source>
        <translation>在 .csv 开头写入字节顺序标记，供没有它就会误认编码的电子表格软件使用。</translation>
    </message>
    <message>
        <source>--bom is for a .csv file</source>
        <translation>--bom 用于 .csv 文件</translation>
    </message>
    <message>
        <source>--crs is for a .geojson file</source>
        <translation>--crs 用于 .geojson 文件</translation>
    </message>
    <message>
        <source>--crs needs a reference system such as EPSG:25832: %1</source>
        <translation>--crs 需要参考系，如 EPSG:25832：%1</translation>
    </message>
    <message>
        <source>.csv, .geojson, .dxf or .svg</source>
        <translation>.csv、.geojson、.dxf 或 .svg</translation>
    </message>
    <message>
        <source>Prints what a file holds.</source>
        <translation>显示文件的内容。</translation>
    </message>
    <message>
        <source>Writes a job in another format, chosen by the suffix of OUT. Field books (.txt, .lqf) turn into each other and into a network (.in2); every kind turns into a project (.kvn) and into coordinates (.dat), a job or a network with its known points. For other programs these are written with the lines between them as a table (.csv), for geographic information systems (.geojson) and CAD (.dxf, release 12), and as a map (.svg).</source>
        <translation>把作业写成另一种格式，由 OUT 的后缀决定。外业记录（.txt、.lqf）可互相转换，也可转换为控制网（.in2）；各种文件都可转换为项目（.kvn）和坐标（.dat），作业和控制网写出其已知点。供其他程序使用时，点和点间的边写成表格（.csv）、地理信息系统文件（.geojson）、CAD 文件（.dxf，第 12 版），或网图（.svg）。</translation>
    </message>
    <message>
        <source>File to write: .kvn, .txt, .lqf, .in2, .dat, %1.</source>
        <translation>要写入的文件：.kvn、.txt、.lqf、.in2、.dat、%1。</translation>
    </message>
    <message>
        <source>Adjusts the network of a file and prints coordinates with their errors, and the heights of a field book. The a-priori errors are those of the options, else those of the file, else the defaults.</source>
        <translation>对文件中的控制网平差，输出坐标及其中误差，以及外业记录的高程。先验中误差先取选项给出的值，其次取文件中的值，再次取默认值。</translation>
    </message>
    <message>
        <source>File to write: the adjusted coordinates (.dat), the project with them (.kvn), or the observations (.txt, .lqf, .in2); for other programs points, errors and lines (.csv, .geojson, .dxf), or the map (.svg).</source>
        <translation>要写入的文件：平差坐标（.dat）、含平差坐标的项目（.kvn）或观测值（.txt、.lqf、.in2）；供其他程序使用的点、中误差和边（.csv、.geojson、.dxf），或网图（.svg）。</translation>
    </message>
    <message>
        <source>Print only what is looked at first: the judgement, the figures of the whole, the findings.</source>
        <translation>只输出首先要看的内容：评定、整体数据和发现的问题。</translation>
    </message>
    <message>
        <source>--short does not go with --json</source>
        <translation>--short 不能与 --json 同用</translation>
    </message>
    <message>
        <source>--short does not go with --as-read</source>
        <translation>--short 不能与 --as-read 同用</translation>
    </message>
    <message>
        <source>Adjusts the network of a file as adjust does, and writes a page: the judgement of the whole, what to look at first, a map, and tables of points, observations, traverses and heights. It needs no other file, and prints on A4. A coordinate file gives points and map.</source>
        <translation>与 adjust 一样对文件中的控制网平差，并写成网页：整体评定、首先要看的内容、网图，以及点、观测值、导线和高程的表格。网页不依赖其他文件，可按 A4 打印。坐标文件给出点和网图。</translation>
    </message>
    <message>
        <source>Page to write.</source>
        <translation>要写入的网页。</translation>
    </message>
    <message>
        <source>Of a field book the heights alone, without the plane.</source>
        <translation>只计算外业记录的高程，不计算平面。</translation>
    </message>
    <message>
        <source>Heading of the page (default: the name of the file).</source>
        <translation>网页的标题（默认为文件名）。</translation>
    </message>
    <message>
        <source>--method does not go with --heights</source>
        <translation>--method 不能与 --heights 同用</translation>
    </message>
    <message>
        <source>--as-read does not go with --heights</source>
        <translation>--as-read 不能与 --heights 同用</translation>
    </message>
    <message>
        <source>Tells how good the results of a network will be, before it is measured: standard errors, error ellipses, redundancy numbers, smallest detectable gross errors, and what nothing will check. Readings that FILE has do not count, and a network file may go without: TARGET,L is a direction, TARGET,S a distance, TARGET,LS both. Errors are those by the unit weight error 1.</source>
        <translation>在测量之前预估控制网成果的精度：中误差、误差椭圆、多余观测分量、可发现的最小粗差，以及没有检核的内容。FILE 中的读数不起作用，控制网文件也可以没有读数：TARGET,L 为方向，TARGET,S 为边长，TARGET,LS 为两者。误差按单位权中误差 1 计算。</translation>
    </message>
    <message>
        <source>Coordinate file (.dat) with all points of FILE; known points keep their own.</source>
        <translation>含 FILE 中全部点的坐标文件（.dat）；已知点仍用自身坐标。</translation>
    </message>
    <message>
        <source>How the two parts are joined: sum (the default), or root of the sum of squares.</source>
        <translation>两部分的合成方式：sum 相加（默认），或 root 平方和的平方根。</translation>
    </message>
    <message>
        <source>--points is missing</source>
        <translation>缺少 --points</translation>
    </message>
    <message>
        <source>Computes trigonometric heights from vertical readings and slant distances.</source>
        <translation>由竖直度盘读数和斜距计算三角高程。</translation>
    </message>
    <message>
        <source>Field book (.txt, .lqf) or project (.kvn).</source>
        <translation>外业记录（.txt、.lqf）或项目（.kvn）。</translation>
    </message>
    <message>
        <source>Of the test of the whole, 0.5 to 0.9999 (default 0.95).</source>
        <translation>整体检验的置信水平，0.5 至 0.9999（默认 0.95）。</translation>
    </message>
    <message>
        <source>Take the rows literally, as the library does by default: every target needs two faces with distances, and full-circle zenith readings give the index term of the circle instead of the elevation.</source>
        <translation>按字面读取记录，即程序库的默认方式：每个目标需要盘左盘右带距离的两次照准，全圆天顶距读数给出度盘指标差项而不是高度角。</translation>
    </message>
    <message>
        <source>Draws the map of a job: lines, points and their names, north up, with a grid; where the job can be adjusted by least squares, with error ellipses, and with suspected observations in colour. No display is needed. What cannot be adjusted stands at approximate coordinates.</source>
        <translation>绘制作业的网图：边、点及点名，上方为北，带格网；作业能按最小二乘法平差时，还绘出误差椭圆，并用颜色标出可疑观测值。不需要显示器。不能平差的点按近似坐标绘出。</translation>
    </message>
    <message>
        <source>File to write with the heights: .csv; of points with coordinates also .geojson, .dxf, .svg.</source>
        <translation>要写入高程的文件：.csv；对有坐标的点还可为 .geojson、.dxf、.svg。</translation>
    </message>
    <message>
        <source>traverses are looked for in a file that is read with care alone, not to the letter</source>
        <translation>只有仔细读取（而非按字面读取）的文件才查找导线</translation>
    </message>
    <message>
        <source>the map was not drawn: no point and no line shows on the picture</source>
        <translation>未绘出网图：图上没有任何点和边</translation>
    </message>
    <message>
        <source>Picture to write: .png, or .svg.</source>
        <translation>要写入的图：.png 或 .svg。</translation>
    </message>
    <message>
        <source>Width and height of the picture in pixels (default 1200x900).</source>
        <translation>图的宽和高，单位像素（默认 1200x900）。</translation>
    </message>
    <message>
        <source>Dots per inch of a .png, 48 to 1200 (default 96): symbols, names and lines grow with them.</source>
        <translation>.png 每英寸的点数，48 至 1200（默认 96）：符号、点名和线随之放大。</translation>
    </message>
    <message>
        <source>How many times as large as the map ellipses are drawn, or none; by their size if not given.</source>
        <translation>椭圆相对网图的放大倍数，或 none 不绘；未给出时按椭圆大小确定。</translation>
    </message>
    <message>
        <source>Of the ellipses, 0.5 to 0.9999 (default 0.95).</source>
        <translation>椭圆的置信水平，0.5 至 0.9999（默认 0.95）。</translation>
    </message>
    <message>
        <source>Title of the picture; the name of FILE if not given.</source>
        <translation>图的标题；未给出时为 FILE 的文件名。</translation>
    </message>
    <message>
        <source>Runs a JSON array of commands, each {"name", "in"}, on a project. Prints a JSON array of results, each {"ok", "out", "messages"}.</source>
        <translation>对项目执行 JSON 命令数组，每个命令为 {"name", "in"}。输出 JSON 结果数组，每个结果为 {"ok", "out", "messages"}。</translation>
    </message>
    <message>
        <source>File to open before the first command.</source>
        <translation>执行第一个命令之前打开的文件。</translation>
    </message>
    <message>
        <source>File to write after the last command: .kvn, .txt, .lqf, .in2, .dat, %1.</source>
        <translation>执行最后一个命令之后写入的文件：.kvn、.txt、.lqf、.in2、.dat、%1。</translation>
    </message>
    <message>
        <source>%1 was not written: %2</source>
        <translation>%1 未写入：%2</translation>
    </message>
    <message>
        <source>Left out, since they have no coordinates: %1</source>
        <translation>没有坐标而略去：%1</translation>
    </message>
    <message>
        <source>standard input could not be read to its end: %1</source>
        <translation>标准输入未能读完：%1</translation>
    </message>
    <message>
        <source>the file is no text in the encoding %1</source>
        <translation>文件不是编码 %1 的文本</translation>
    </message>
    <message>
        <source>a text</source>
        <translation>文本</translation>
    </message>
    <message>
        <source>a number</source>
        <translation>数</translation>
    </message>
    <message>
        <source>a whole number</source>
        <translation>整数</translation>
    </message>
    <message>
        <source>true or false</source>
        <translation>true 或 false</translation>
    </message>
    <message>
        <source>an array of texts</source>
        <translation>文本数组</translation>
    </message>
    <message>
        <source>an object</source>
        <translation>对象</translation>
    </message>
    <message>
        <source>%1: "%2" must be %3</source>
        <translation>%1：“%2”必须是%3</translation>
    </message>
    <message>
        <source>%1: "%2" is missing</source>
        <translation>%1：缺少“%2”</translation>
    </message>
    <message>
        <source>%1: nothing reads "%2"</source>
        <translation>%1：没有任何步骤读取“%2”</translation>
    </message>
    <message>
        <source>unknown command: %1</source>
        <translation>未知命令：%1</translation>
    </message>
    <message>
        <source>%1: with "%2" alone "%3" is 0 now</source>
        <translation>%1：只给出“%2”，“%3”现为 0</translation>
    </message>
    <message>
        <source>What is wrong with %1, and in which line, kelvane check tells</source>
        <translation>%1 有何错误、在哪一行，请用 kelvane check 查看</translation>
    </message>
    <message>
        <source>Read with care, %1 has no error in its lines; kelvane check tells more</source>
        <translation>经仔细读取，%1 各行没有错误；详情请用 kelvane check 查看</translation>
    </message>
    <message>
        <source>%1 can be read with care, by --open</source>
        <translation>%1 可用 --open 仔细读取</translation>
    </message>
    <message>
        <source>the job is a network of %1 known points and %2 lines without rows: a row would take their place; AddNetworkDataCMD adds to a network</source>
        <translation>该作业是有 %1 个已知点和 %2 条边的控制网，没有观测行：新行会取代它们；向控制网添加请用 AddNetworkDataCMD</translation>
    </message>
    <message>
        <source>The %1 rows are no longer in the job: the network does not follow from them any more</source>
        <translation>%1 个观测行已不在作业中：控制网不再由它们得出</translation>
    </message>
    <message>
        <source>there is nothing to undo</source>
        <translation>没有可撤销的操作</translation>
    </message>
    <message>
        <source>there is nothing to redo</source>
        <translation>没有可重做的操作</translation>
    </message>
    <message>
        <source>line %1, column %2</source>
        <translation>第 %1 行第 %2 列</translation>
    </message>
    <message>
        <source>standard input is empty: commands are a JSON array, or one command a line</source>
        <translation>标准输入为空：命令应为 JSON 数组，或每行一个命令</translation>
    </message>
    <message>
        <source>standard input is not JSON: %1</source>
        <translation>标准输入不是 JSON：%1</translation>
    </message>
    <message>
        <source>standard input is not a JSON array of commands</source>
        <translation>标准输入不是 JSON 命令数组</translation>
    </message>
    <message>
        <source>command %1 on standard input is not {"name": text, "in": object}</source>
        <translation>标准输入中的第 %1 个命令不是 {"name": 文本, "in": 对象}</translation>
    </message>
    <message>
        <source>not written, since a command failed</source>
        <translation>因有命令失败而未写入</translation>
    </message>
    <message>
        <source>standard output cannot be written: %1</source>
        <translation>无法写入标准输出：%1</translation>
    </message>
    <message>
        <source>a name cannot be written in the encoding %1</source>
        <translation>有名称无法用编码 %1 写出</translation>
    </message>
    <message>
        <source>encoding of files that are not UTF-8, such as GBK</source>
        <translation>非 UTF-8 文件的编码，如 GBK</translation>
    </message>
    <message>
        <source>print only errors</source>
        <translation>只输出错误</translation>
    </message>
    <message>
        <source>FILE is a traverse file (.txt), an instrument job (.lqf), a COSA network (.in2), a coordinate file (.dat) or a project (.kvn); - is standard input, with --kind. Exit code: 0 done, 1 data refused, 2 wrong usage.</source>
        <translation>FILE 为导线文件（.txt）、仪器作业（.lqf）、COSA 控制网（.in2）、坐标文件（.dat）或项目（.kvn）；- 为标准输入，须给出 --kind。退出码：0 完成，1 数据被拒绝，2 用法错误。</translation>
    </message>
    <message>
        <source>; --encoding names another one</source>
        <translation>；可用 --encoding 指定其他编码</translation>
    </message>
    <message>
        <source>standard input</source>
        <translation>标准输入</translation>
    </message>
    <message>
        <source>there is no folder %1</source>
        <translation>文件夹 %1 不存在</translation>
    </message>
    <message>
        <source>%1 is no folder</source>
        <translation>%1 不是文件夹</translation>
    </message>
    <message>
        <source>Print no tables and no notes or warnings, only errors and what a saved file lacks.</source>
        <translation>不输出表格、提示和警告，只输出错误以及保存的文件所缺的内容。</translation>
    </message>
    <message>
        <source>Encoding of files that are not UTF-8, such as GBK; that of the locale if not given. Coordinates (.dat) are always in it. With --as-read networks and traverse files are UTF-8.</source>
        <translation>非 UTF-8 文件的编码，如 GBK；未给出时用系统区域的编码。坐标文件（.dat）总是用该编码。与 --as-read 同用时，控制网和导线文件为 UTF-8。</translation>
    </message>
    <message>
        <source>What is on standard input, where FILE is -: in2, txt, lqf, dat or kvn.</source>
        <translation>FILE 为 - 时，标准输入的文件类型：in2、txt、lqf、dat 或 kvn。</translation>
    </message>
    <message>
        <source>What is written to standard output, where the file is -, by its suffix.</source>
        <translation>写入的文件为 - 时，标准输出的文件类型，以后缀表示。</translation>
    </message>
    <message>
        <source>standard input can be read once</source>
        <translation>标准输入只能读取一次</translation>
    </message>
    <message>
        <source>- needs --kind, such as --kind in2</source>
        <translation>- 须给出 --kind，如 --kind in2</translation>
    </message>
    <message>
        <source>--kind is for standard input, -</source>
        <translation>--kind 用于标准输入 -</translation>
    </message>
    <message>
        <source>unknown kind: %1</source>
        <translation>未知的文件类型：%1</translation>
    </message>
    <message>
        <source>- needs --to, such as --to %1</source>
        <translation>- 须给出 --to，如 --to %1</translation>
    </message>
    <message>
        <source>--to is for standard output, -</source>
        <translation>--to 用于标准输出 -</translation>
    </message>
    <message>
        <source>--json does not go with standard output, -</source>
        <translation>--json 不能与标准输出 - 同用</translation>
    </message>
    <message>
        <source>Prints what is wrong with files, and what computes but should not be trusted, a line each. The exit code is 1 when a file cannot be computed or a row check marks a row.</source>
        <translation>逐行输出各文件中的错误，以及虽能计算但不可信之处。有文件无法计算或记录检查标出记录时，退出码为 1。</translation>
    </message>
    <message>
        <source>--save needs a file: the results are on standard output</source>
        <translation>--save 需要一个文件：结果已写到标准输出</translation>
    </message>
    <message>
        <source>standard output</source>
        <translation>标准输出</translation>
    </message>
    <message>
        <source>line %1 of standard input is not JSON: %2</source>
        <translation>标准输入第 %1 行不是 JSON：%2</translation>
    </message>
    <message>
        <source>line %1 of standard input is not {"name": text, "in": object}</source>
        <translation>标准输入第 %1 行不是 {"name": 文本, "in": 对象}</translation>
    </message>
    <message>
        <source>JSON array on standard input; or one command a line, each answered on a line before the next one is read. Beside the commands of the library: list, undo, redo.</source>
        <translation>标准输入中的 JSON 数组；或每行一个命令，每个命令在读取下一个之前以一行回答。除程序库的命令外还有：list、undo、redo。</translation>
    </message>
    <message>
        <source>Confidence ellipses</source>
        <translation>置信椭圆</translation>
    </message>
    <message>
        <source>Standard error ellipses</source>
        <translation>标准误差椭圆</translation>
    </message>
    <message>
        <source>Not adjusted</source>
        <translation>未平差</translation>
    </message>
    <message>
        <source>Adjusted by least squares</source>
        <translation>最小二乘平差</translation>
    </message>
    <message>
        <source>Traverse</source>
        <translation>导线</translation>
    </message>
    <message>
        <source>Planned</source>
        <translation>设计</translation>
    </message>
    <message>
        <source>points</source>
        <translation>点</translation>
    </message>
    <message>
        <source>lines</source>
        <translation>边</translation>
    </message>
    <message>
        <source>station</source>
        <translation>测站</translation>
    </message>
    <message>
        <source>error ellipse</source>
        <translation>误差椭圆</translation>
    </message>
    <message>
        <source>No font with Chinese signs was found (package fonts-wqy-microhei, or a file that KELVANE_FONT names): the words of the picture are English</source>
        <translation>未找到含中文字符的字体（软件包 fonts-wqy-microhei，或由 KELVANE_FONT 指定的字体文件）：图中文字为英文</translation>
    </message>
    <message>
        <source>the traverse goes on over the known point %1, where it has to end: adjusted so, the point would be moved</source>
        <translation>导线越过已知点 %1，而应止于该点：如此平差会移动该点</translation>
    </message>
    <message>
        <source>the traverse over %1 is refused: %2</source>
        <translation>经过 %1 的导线被拒绝：%2</translation>
    </message>
    <message>
        <source>traverse from %1 to %2</source>
        <translation>从 %1 到 %2 的导线</translation>
    </message>
    <message>
        <source>traverse from %1 over %2 to %3</source>
        <translation>从 %1 经 %2 到 %3 的导线</translation>
    </message>
    <message>
        <source>the distance differs from the known coordinates by %1, where the a-priori errors allow %2</source>
        <translation>距离与已知坐标相差 %1，先验误差允许 %2</translation>
    </message>
    <message>
        <source>the direction misses the known point by %1, where the a-priori errors allow %2</source>
        <translation>方向与已知点相差 %1，先验误差允许 %2</translation>
    </message>
    <message>
        <source>the known point and the mark %3 contradict each other by %1, where the a-priori errors allow %2; one of the two is wrong</source>
        <translation>该已知点与定向点 %3 相互矛盾，相差 %1，先验误差允许 %2；两者之一有误</translation>
    </message>
    <message>
        <source>A sight to a known point does not fit it: by more than the a-priori errors allow.</source>
        <translation>对已知点的观测与该点不符：超出先验误差的允许值。</translation>
    </message>
    <message>
        <source>Nothing closes an open traverse; sights to known points that check it in part, and fit: %1.</source>
        <translation>支导线没有闭合条件；对其作部分检核且相符的已知点观测：%1 个。</translation>
    </message>
    <message>
        <source>Check shot</source>
        <translation>检核观测</translation>
    </message>
    <message>
        <source>off by</source>
        <translation>相差</translation>
    </message>
    <message>
        <source>Sights to known points beside the chain</source>
        <translation>导线以外的已知点观测</translation>
    </message>
    <message>
        <source>no sight gives it a height: it is left out of the heights</source>
        <translation>没有观测能给出其高程：不参与高程计算</translation>
    </message>
</context>
<context>
    <name>QCommandLineParser</name>
    <message>
        <source>Unexpected value after '%1'.</source>
        <translation>“%1”之后有多余的值。</translation>
    </message>
    <message>
        <source>Missing value after '%1'.</source>
        <translation>“%1”之后缺少值。</translation>
    </message>
</context>
</TS>
