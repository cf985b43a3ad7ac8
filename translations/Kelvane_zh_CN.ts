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
        <source>The configuration file %1 cannot be read; the default settings are used</source>
        <translation>无法读取配置文件 %1，将使用默认设置</translation>
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
        <source>the file belongs to a group that the new one cannot be given</source>
        <translation>文件所属的组无法赋予新文件</translation>
    </message>
    <message>
        <source>it is in its place, but may be lost if the power fails now</source>
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
        <source>the direction differs by more than 30&quot; from that of the rounds before</source>
        <translation>该方向与此前测回之差超过 30"</translation>
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
        <source>an observation does not fit, or a known point, and nothing tells which</source>
        <translation>某个观测值或某个已知点不符，无法判明是哪一个</translation>
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
</context>
</TS>
